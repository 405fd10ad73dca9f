#pragma once

#include "ReadyFuture.h"
#include "platform/NotificationCenter.h"

#include <QStringList>

#include <functional>
#include <vector>

namespace kelvo {

/// A notification center that records the posted notifications and counts the calls.
class FakeNotificationCenter : public NotificationCenter
{
public:
    bool canServeThisProcess() const override { return serves; }

    QFuture<AuthorizationStatus> authorizationStatus() override
    {
        ++reads;
        return readyFuture(status);
    }

    QFuture<QString> turnedOffIn() override { return readyFuture(turnedOff); }

    QFuture<void> requestAuthorization() override
    {
        ++requests;
        return readyFuture();
    }

    void add(const LocalNotification &notification) override
    {
        notifications.push_back(notification);
        if (onAdd) {
            onAdd(notification);
        }
    }

    /// The titles of the posted notifications, in order.
    QStringList titles() const
    {
        QStringList all;
        for (const auto &notification : notifications) {
            all.append(notification.title);
        }
        return all;
    }

    bool serves = true;
    AuthorizationStatus status = AuthorizationStatus::notDetermined;
    QString turnedOff;                                    ///< where the notifications are turned off
    std::function<void(const LocalNotification &)> onAdd; ///< called within `add`, to inspect the state at that moment

    std::vector<LocalNotification> notifications;
    int reads = 0;    ///< calls of `authorizationStatus`
    int requests = 0; ///< calls of `requestAuthorization`
};

} // namespace kelvo
