#pragma once

#include "platform/NetworkWatch.h"

#include <QSocketNotifier>

#include <memory>
#include <set>
#include <string>

namespace kelvo {

/// The network as the kernel tells of it over rtnetlink (rtnetlink(7)), whoever configures it. Costs one descriptor, and
/// wakes the process only when a route, an address or an interface changes.
class RtnetlinkNetworkWatch : public NetworkWatch
{
    Q_OBJECT

public:
    RtnetlinkNetworkWatch();
    ~RtnetlinkNetworkWatch() override;

private:
    void readNotifications();

    int socket_;
    std::unique_ptr<QSocketNotifier> notifier_;
    /// The ways out that stand: a default route each, with an address of its interface.
    std::set<std::string> waysOut_;
};

} // namespace kelvo
