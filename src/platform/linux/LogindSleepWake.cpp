#include "platform/linux/LogindSleepWake.h"

using namespace Qt::StringLiterals;

namespace kelvo {

LogindSleepWake::LogindSleepWake(std::shared_ptr<BusConnection> systemBus)
    : manager_(std::move(systemBus), u"org.freedesktop.login1"_s)
{
    manager_.listen(u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s, this,
                    SLOT(prepareForSleep(bool)));
    // The login manager that announced the sleep is gone or was replaced, so it cannot announce the wake-up.
    connect(&manager_, &BusNameOwner::changed, this, [this] { prepareForSleep(false); });
}

void LogindSleepWake::prepareForSleep(bool start)
{
    if (asleep_ == start) {
        return;
    }
    asleep_ = start;
    if (asleep_) {
        Q_EMIT willSleep();
    } else {
        Q_EMIT didWake();
    }
}

} // namespace kelvo
