#pragma once

#include <QFuture>
#include <QObject>
#include <QString>

namespace kelvo {

/// The system's permission to post notifications. The values equal those of UNAuthorizationStatus.
enum class AuthorizationStatus { notDetermined = 0, denied = 1, authorized = 2 };

/// A local notification. It is shown at once and without a sound.
struct LocalNotification
{
    QString identifier; ///< unique text
    QString title;      ///< plain text
    QString body;       ///< plain text; the center escapes it when the system interprets markup

    bool operator==(const LocalNotification &) const = default;
};

/// The system's notification service.
class NotificationCenter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Whether the system's notification service can be used by this process at all (on macOS: the process runs from a
    /// bundle with an identifier; on Linux: the session has a message bus, even if that restarts just now). The other functions may be called only when
    /// this is true.
    virtual bool canServeThisProcess() const = 0;

    /// Reads the permission. Never fails: the result is `notDetermined` when the permission cannot be read.
    virtual QFuture<AuthorizationStatus> authorizationStatus() = 0;

    /// Asks the user for the permission to show alerts and play sounds, if the system has such a dialog. The future
    /// finishes when the user has answered, whatever the answer. Never fails.
    virtual QFuture<void> requestAuthorization() = 0;

    /// Posts the notification without a sound and returns at once. Errors are ignored.
    virtual void add(const LocalNotification &notification) = 0;

Q_SIGNALS:
    /// The user clicked a notification of this process.
    void activated();
};

} // namespace kelvo
