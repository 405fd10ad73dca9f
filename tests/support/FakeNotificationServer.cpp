#include "support/FakeNotificationServer.h"

using namespace Qt::StringLiterals;

namespace kelvo {

FakeNotificationServer::FakeNotificationServer(const PrivateBus &bus, const QStringList &capabilities)
    : capabilities_(capabilities)
    , service_(bus, u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s, this,
               QDBusConnection::ExportScriptableSlots)
{
}

QStringList FakeNotificationServer::GetCapabilities()
{
    ++questions_;
    return capabilities_;
}

uint FakeNotificationServer::Notify(const QString &applicationName, uint replacesId, const QString &applicationIcon,
                                    const QString &summary, const QString &body, const QStringList &actions,
                                    const QVariantMap &hints, int expireTimeout)
{
    notifications_.append({applicationName, replacesId, applicationIcon, summary, body, actions, hints, expireTimeout});
    return static_cast<uint>(notifications_.size());
}

} // namespace kelvo
