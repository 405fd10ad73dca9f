#include "macos/PostedNotificationWatch.h"

#include <QPointer>

namespace kelvo {

using namespace Qt::StringLiterals;

/// The notification center of the system. It tells the watch what is posted.
class PostedNotificationWatch::Center : public NotificationCenter
{
public:
    Center(std::unique_ptr<NotificationCenter> system, PostedNotificationWatch *watch)
        : system_(std::move(system))
        , watch_(watch)
    {
        connect(system_.get(), &NotificationCenter::activated, this, &NotificationCenter::activated);
    }

    bool canServeThisProcess() const override { return system_->canServeThisProcess(); }
    QFuture<AuthorizationStatus> authorizationStatus() override { return system_->authorizationStatus(); }
    QFuture<QString> turnedOffIn() override { return system_->turnedOffIn(); }
    QFuture<void> requestAuthorization() override { return system_->requestAuthorization(); }
    void add(const LocalNotification &notification) override
    {
        system_->add(notification);
        if (watch_) {
            watch_->see(notification.title, notification.body);
        }
    }

private:
    std::unique_ptr<NotificationCenter> system_;
    QPointer<PostedNotificationWatch> watch_;
};

PostedNotificationWatch::PostedNotificationWatch(Platform &platform)
{
    auto center = std::make_unique<Center>(std::move(platform.notificationCenter), this);
    center_ = center.get();
    platform.notificationCenter = std::move(center);
}

bool PostedNotificationWatch::start()
{
    if (!center_->canServeThisProcess()) {
        fail(u"the system notifies only for a program that is started from its bundle"_s);
        return false;
    }
    center_->requestAuthorization();
    return true;
}

} // namespace kelvo
