#include "support/FakeNotificationServer.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto serverName = u"org.freedesktop.Notifications"_s;

} // namespace

FakeNotificationServer::FakeNotificationServer(const PrivateBus &bus, const QStringList &capabilities)
    : capabilities_(capabilities)
    , service_(bus, serverName, u"/org/freedesktop/Notifications"_s, this, QDBusConnection::ExportScriptableContents)
{
}

void FakeNotificationServer::click(uint id, const QString &token, const QString &action)
{
    Q_EMIT ActivationToken(id, token);
    Q_EMIT ActionInvoked(id, action);
}

void FakeNotificationServer::close(uint id)
{
    constexpr uint closedByUser = 2;
    Q_EMIT NotificationClosed(id, closedByUser);
}

void FakeNotificationServer::leave()
{
    service_.connection().unregisterService(serverName);
}

void FakeNotificationServer::refuse()
{
    for (const auto &call : std::exchange(heldBack_, {})) {
        service_.connection().send(call.createErrorReply(QDBusError::ServiceUnknown, u"nobody"_s));
    }
}

QStringList FakeNotificationServer::GetCapabilities()
{
    ++questions_;
    if (isSilent_) {
        setDelayedReply(true);
    }
    return capabilities_;
}

uint FakeNotificationServer::Notify(const QString &applicationName, uint replacesId, const QString &applicationIcon,
                                    const QString &summary, const QString &body, const QStringList &actions,
                                    const QVariantMap &hints, int expireTimeout)
{
    if (isHoldingBack_) {
        setDelayedReply(true);
        heldBack_.append(message());
        return 0;
    }
    notifications_.append({applicationName, replacesId, applicationIcon, summary, body, actions, hints, expireTimeout});
    return static_cast<uint>(notifications_.size());
}

} // namespace kelvo
