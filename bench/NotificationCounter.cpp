#include "NotificationCounter.h"

#include <QDBusConnection>

namespace kelvo {

using namespace Qt::StringLiterals;

NotificationCounter::NotificationCounter()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(u"/org/freedesktop/Notifications"_s, this, QDBusConnection::ExportScriptableContents)
        || !bus.registerService(u"org.freedesktop.Notifications"_s)) {
        qFatal("The notifications of this session cannot be counted");
    }
}

uint NotificationCounter::Notify(const QString &, uint, const QString &, const QString &summary, const QString &,
                                 const QStringList &, const QVariantMap &, int)
{
    ++alerts_;
    const bool isDown = summary.endsWith(" is down"_L1);
    const auto name = summary.left(summary.lastIndexOf(" is "_L1));
    if (isDown_.value(name) == isDown) {
        faults_.append(u"Alert %1: %2, for the second time"_s.arg(alerts_).arg(summary));
    }
    isDown_.insert(name, isDown);
    const auto id = static_cast<uint>(alerts_);
    // The user closes each notification at once.
    constexpr uint closedByUser = 2;
    Q_EMIT NotificationClosed(id, closedByUser);
    return id;
}

} // namespace kelvo
