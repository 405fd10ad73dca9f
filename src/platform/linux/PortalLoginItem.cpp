#include "platform/linux/PortalLoginItem.h"

#include <QCoreApplication>
#include <QFile>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto portalName = u"org.freedesktop.portal.Desktop"_s;
const auto portalPath = u"/org/freedesktop/portal/desktop"_s;
const auto requestInterface = u"org.freedesktop.portal.Request"_s;
const auto responseSignal = u"Response"_s;

/// The object path that the portal makes for a request of this sender with this token.
QString requestPath(const QString &sender, const QString &token)
{
    return portalPath + u"/request/"_s + sender.mid(1).replace(u'.', u'_') + u'/' + token;
}

} // namespace

PortalLoginItem::PortalLoginItem(std::shared_ptr<BusConnection> sessionBus, std::unique_ptr<LoginItem> record)
    : bus_(std::move(sessionBus))
    , record_(std::move(record))
{
    connect(bus_.get(), &BusConnection::disconnected, this, &PortalLoginItem::end);
}

bool PortalLoginItem::isNeeded()
{
    // Programs outside of a snap inherit its variables when they are started from inside.
    const auto snap = qEnvironmentVariable("SNAP");
    return QFile::exists(u"/.flatpak-info"_s)
        || (!snap.isEmpty() && QCoreApplication::applicationFilePath().startsWith(snap + u'/'));
}

bool PortalLoginItem::isEnabled() const
{
    return record_->isEnabled();
}

bool PortalLoginItem::registerItem()
{
    return request(true);
}

bool PortalLoginItem::unregisterItem()
{
    return request(false);
}

bool PortalLoginItem::request(bool autostart)
{
    if (!bus_->isConnected() || !request_.isEmpty()) {
        return false;
    }
    const auto token = u"kelvo_"_s + QUuid::createUuid().toString(QUuid::Id128);
    request_ = requestPath(bus_->connection().baseService(), token);
    // Listen before the call, because the answer may come at once. Nobody else can guess the path.
    bus_->subscribe(request_, requestInterface, responseSignal, this, SLOT(onResponse(uint, QVariantMap)));

    auto call = QDBusMessage::createMethodCall(portalName, portalPath, u"org.freedesktop.portal.Background"_s,
                                               u"RequestBackground"_s);
    call << QString()
         << QVariantMap{
                {u"handle_token"_s, token},
                {u"reason"_s, u"Kelvo watches your AI tools and tells you when they are usable again."_s},
                {u"autostart"_s, autostart},
                {u"commandline"_s, QStringList{u"kelvo"_s}},
            };
    bus_->call(call, this, [this, path = request_](const QDBusMessage &answer) {
        if (answer.type() == QDBusMessage::ErrorMessage && request_ == path) {
            end();
        }
    });
    return true;
}

void PortalLoginItem::onResponse(uint response, const QVariantMap &results)
{
    constexpr uint success = 0;
    if (response == success) {
        const bool starts = results.value(u"autostart"_s).toBool();
        // Without a record the switch springs back, though the portal agreed. There is nobody to ask later.
        static_cast<void>(starts ? record_->registerItem() : record_->unregisterItem());
    }
    end();
}

void PortalLoginItem::end()
{
    if (request_.isEmpty()) {
        return;
    }
    bus_->unsubscribe(request_, requestInterface, responseSignal, this, SLOT(onResponse(uint, QVariantMap)));
    request_.clear();
    Q_EMIT changed();
}

} // namespace kelvo
