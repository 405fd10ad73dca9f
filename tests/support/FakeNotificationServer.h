#pragma once

#include "support/PrivateBus.h"

#include <QDBusContext>
#include <QDBusMessage>
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
    /// From now on Notify is not answered and shows nothing.
    void holdBack() { isHoldingBack_ = true; }
    /// Gives up the name, but stays on the bus.
    void leave();
    /// The number of calls of Notify that are held back.
    qsizetype heldBack() const { return heldBack_.size(); }
    /// Answers the calls that were held back as the bus does when nobody has the name.
    void refuse();
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
    bool isHoldingBack_ = false;
    QList<QDBusMessage> heldBack_;
    BusService service_;
};

} // namespace kelvo
