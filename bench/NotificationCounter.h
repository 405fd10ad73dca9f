#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace kelvo {

/// A notification server on the session bus that shows nothing. It counts the alerts of each service and checks that each
/// end of an outage follows a beginning.
class NotificationCounter : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    /// Ends the program when the session has another server.
    NotificationCounter();

    int alerts() const { return alerts_; }
    /// The number of services whose last alert reports an outage.
    int servicesDown() const { return static_cast<int>(isDown_.values().count(true)); }
    /// The alerts that repeat or contradict the one before, as texts for people.
    const QStringList &faults() const { return faults_; }

public Q_SLOTS:
    Q_SCRIPTABLE QStringList GetCapabilities() { return {}; }
    Q_SCRIPTABLE uint Notify(const QString &applicationName, uint replacesId, const QString &applicationIcon,
                             const QString &summary, const QString &body, const QStringList &actions,
                             const QVariantMap &hints, int expireTimeout);

Q_SIGNALS:
    Q_SCRIPTABLE void ActionInvoked(uint id, const QString &action);
    Q_SCRIPTABLE void NotificationClosed(uint id, uint reason);

private:
    int alerts_ = 0;
    QHash<QString, bool> isDown_; ///< by the name of the service
    QStringList faults_;
};

} // namespace kelvo
