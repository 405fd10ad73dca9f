#include "platform/LockWatch.h"

#include "platform/macos/NotificationObserver.h"

namespace kelvo {

/// The system posts this notification, whose name is not documented, to all programs.
class LockWatch::Native
{
public:
    explicit Native(LockWatch &watch)
        : observer_(NSDistributedNotificationCenter.defaultCenter, @"com.apple.screenIsLocked",
                    [&watch] { Q_EMIT watch.locked(); })
    {
    }

private:
    NotificationObserver observer_;
};

LockWatch::LockWatch(QObject *parent)
    : QObject(parent)
{
}

LockWatch::~LockWatch() = default;

void LockWatch::start()
{
    native_ = std::make_unique<Native>(*this);
}

void LockWatch::stop()
{
    native_.reset();
}

} // namespace kelvo
