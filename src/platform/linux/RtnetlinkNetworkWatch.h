#pragma once

#include "platform/NetworkWatch.h"

#include <QSocketNotifier>

#include <memory>
#include <set>
#include <string>

namespace kelvo {

/// Watches the network over rtnetlink (see rtnetlink(7)), independently of the software that configures it. Uses one file
/// descriptor, and wakes the process only when a route, an address or an interface changes.
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
    /// The current ways out of this machine: each is a default route paired with an address of its interface.
    std::set<std::string> waysOut_;
};

} // namespace kelvo
