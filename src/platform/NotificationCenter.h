#pragma once

#include <QFuture>
#include <QString>

namespace kelvo {

/// The system's permission to post notifications. Raw values as in UNAuthorizationStatus.
enum class AuthorizationStatus { notDetermined = 0, denied = 1, authorized = 2 };

/// One local notification, shown at once and without a sound.
struct LocalNotification
{
    QString identifier; ///< unique text
    QString title;      ///< plain text
    QString body;       ///< plain text; the center escapes it where the system reads markup

    bool operator==(const LocalNotification &) const = default;
};

/// The system's notification service.
class NotificationCenter
{
public:
    NotificationCenter() = default;
    NotificationCenter(const NotificationCenter &) = delete;
    NotificationCenter &operator=(const NotificationCenter &) = delete;
    virtual ~NotificationCenter() = default;

    /// Whether the platform's notification service can serve this process at all (on macOS: it runs from a bundle
    /// with an identifier; on Linux: there is a session bus). When false nothing else here may be called.
    virtual bool canServeThisProcess() const = 0;

    /// Reads the permission. Never fails: what cannot be found out is `notDetermined`.
    virtual QFuture<AuthorizationStatus> authorizationStatus() = 0;

    /// Asks the user for the permission to alert and to sound, where the system has such a question.
    /// Finishes when it is answered, whatever the answer; never fails.
    virtual QFuture<void> requestAuthorization() = 0;

    /// Posts the notification silently and returns at once. Errors are dropped.
    virtual void add(const LocalNotification &notification) = 0;
};

} // namespace kelvo
