#include "platform/linux/LogindSleepWake.h"

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto path = u"/org/freedesktop/login1"_s;
const auto interface = u"org.freedesktop.login1.Manager"_s;
const auto member = u"PrepareForSleep"_s;

} // namespace

LogindSleepWake::LogindSleepWake(std::shared_ptr<BusConnection> systemBus)
    : bus_(std::move(systemBus))
    , manager_(bus_, u"org.freedesktop.login1"_s)
{
    connect(&manager_, &BusNameOwner::changed, this, &LogindSleepWake::follow);
}

void LogindSleepWake::follow()
{
    if (!followed_.isEmpty()) {
        bus_->unsubscribe(followed_, path, interface, member, this, SLOT(prepareForSleep(bool)));
    }
    followed_ = manager_.owner();
    // Whoever promised to tell of the wake is gone.
    prepareForSleep(false);
    if (!followed_.isEmpty()) {
        bus_->subscribe(followed_, path, interface, member, this, SLOT(prepareForSleep(bool)));
    }
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
