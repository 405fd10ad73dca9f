#pragma once

#include "support/PrivateBus.h"

#include <QDBusContext>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace kelvo {

/// A fake notification server on a private bus. It records the notifications.
class FakeNotificationServer : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Notification
    {
        QString applicationName;
        uint replacesId;
        QString applicationIcon;
        QString summary;
        QString body;
        QStringList actions;
        QVariantMap hints;
        int expireTimeout;
    };

    FakeNotificationServer(const PrivateBus &bus, const QStringList &capabilities);

    const QList<Notification> &notifications() const { return notifications_; }
    /// The number of calls of GetCapabilities.
    int questions() const { return questions_; }
    /// From now on GetCapabilities is not answered, as by a server that hangs.
    void fallSilent() { isSilent_ = true; }
    /// What a server sends when the user clicks a notification.
    void click(uint id, const QString &token, const QString &action = QStringLiteral("default"));
    void close(uint id);

public Q_SLOTS:
    Q_SCRIPTABLE QStringList GetCapabilities();
    Q_SCRIPTABLE uint Notify(const QString &applicationName, uint replacesId, const QString &applicationIcon,
                             const QString &summary, const QString &body, const QStringList &actions,
                             const QVariantMap &hints, int expireTimeout);

Q_SIGNALS:
    Q_SCRIPTABLE void ActivationToken(uint id, const QString &token);
    Q_SCRIPTABLE void ActionInvoked(uint id, const QString &action);
    Q_SCRIPTABLE void NotificationClosed(uint id, uint reason);

private:
    QStringList capabilities_;
    QList<Notification> notifications_;
    int questions_ = 0;
    bool isSilent_ = false;
    BusService service_;
};

} // namespace kelvo
