#pragma once

#include "platform/NetworkWatch.h"
#include "platform/linux/FileWatch.h"

#include <QSocketNotifier>
#include <QString>

#include <memory>
#include <set>
#include <string>

namespace kelvo {

/// Watches the network over rtnetlink (see rtnetlink(7)) and the name servers in resolv.conf, independently of the
/// software that configures them. Wakes the process only when a route, an address, an interface or resolv.conf changes.
class RtnetlinkNetworkWatch : public NetworkWatch
{
    Q_OBJECT

public:
    explicit RtnetlinkNetworkWatch(const QString &resolverFile = QStringLiteral("/etc/resolv.conf"));
    ~RtnetlinkNetworkWatch() override;

private:
    void readNotifications();
    void readNameServers();

    int socket_;
    std::unique_ptr<QSocketNotifier> notifier_;
    /// The current ways out of this machine: each is a default route paired with an address of its interface.
    std::set<std::string> waysOut_;
    FileWatch resolver_;
    std::set<std::string> nameServers_;
};

} // namespace kelvo
