#pragma once

#include "platform/NetworkWatch.h"

namespace kelvo {

/// The network as the system configuration server tells of it: kNotifySCNetworkChange in notify_keys.h. Posted when the
/// primary network changes.
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
