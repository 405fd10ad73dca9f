#pragma once

#include "platform/SleepWake.h"
#include "platform/linux/BusNameOwner.h"

namespace kelvo {

/// Sleep and wake as announced by the login manager on the system bus (PrepareForSleep of org.freedesktop.login1).
class LogindSleepWake : public SleepWake
{
    Q_OBJECT

public:
    explicit LogindSleepWake(std::shared_ptr<BusConnection> systemBus);

private Q_SLOTS:
    void prepareForSleep(bool start);

private:
    BusNameOwner manager_;
    bool asleep_ = false;
};

} // namespace kelvo
