#pragma once

#include "support/PrivateBus.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace kelvo {

/// A fake notification server on a private bus. It records the notifications.
class FakeNotificationServer : public QObject
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

public Q_SLOTS:
    Q_SCRIPTABLE QStringList GetCapabilities();
    Q_SCRIPTABLE uint Notify(const QString &applicationName, uint replacesId, const QString &applicationIcon,
                             const QString &summary, const QString &body, const QStringList &actions,
                             const QVariantMap &hints, int expireTimeout);

private:
    QStringList capabilities_;
    QList<Notification> notifications_;
    int questions_ = 0;
    BusService service_;
};

} // namespace kelvo
