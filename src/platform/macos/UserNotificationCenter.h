#pragma once

#include "platform/NotificationCenter.h"

#include <memory>

namespace kelvo {

/// Posts notifications to the user notification center of the system.
class UserNotificationCenter : public NotificationCenter
{
    Q_OBJECT

public:
    UserNotificationCenter();
    ~UserNotificationCenter() override;

    bool canServeThisProcess() const override;
    QFuture<AuthorizationStatus> authorizationStatus() override;
    QFuture<QString> turnedOffIn() override;
    QFuture<void> requestAuthorization() override;
    void add(const LocalNotification &notification) override;

private:
    class Presentation;
    std::unique_ptr<Presentation> presentation_;
};

} // namespace kelvo
