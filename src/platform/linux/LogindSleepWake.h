#pragma once

#include "platform/SleepWake.h"
#include "platform/linux/BusNameOwner.h"

namespace kelvo {

/// Sleep and wake as the login manager announces them on the system bus.
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
