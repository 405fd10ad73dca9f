#pragma once

#include "platform/NotificationCenter.h"

#include <QStringList>

#include <functional>
#include <vector>

namespace kelvo {

/// A notification center that keeps what is posted and what it was asked.
class FakeNotificationCenter : public NotificationCenter
{
public:
    bool canServeThisProcess() const override { return serves; }

    QFuture<AuthorizationStatus> authorizationStatus() override
    {
        ++reads;
        return QtFuture::makeReadyFuture(status);
    }

    QFuture<void> requestAuthorization() override
    {
        ++requests;
        return QtFuture::makeReadyFuture();
    }

    void add(const LocalNotification &notification) override
    {
        notifications.push_back(notification);
        if (onAdd) {
            onAdd(notification);
        }
    }

    /// The titles of what was posted, in order.
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
    std::function<void(const LocalNotification &)> onAdd; ///< called within `add`, to look at the world as it is then

    std::vector<LocalNotification> notifications;
    int reads = 0;    ///< calls of `authorizationStatus`
    int requests = 0; ///< calls of `requestAuthorization`
};

} // namespace kelvo
