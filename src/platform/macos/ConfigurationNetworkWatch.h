#pragma once

#include "platform/NetworkWatch.h"

namespace kelvo {

/// Watches the network through the notification kNotifySCNetworkChange (notify_keys.h), which the system configuration
/// server posts when the primary network changes.
class ConfigurationNetworkWatch : public NetworkWatch
{
    Q_OBJECT

public:
    ConfigurationNetworkWatch();
    ~ConfigurationNetworkWatch() override;

private:
    int token_;
};

} // namespace kelvo
