#include "platform/linux/DBusNotificationCenter.h"

#include "platform/linux/ActivationToken.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QPromise>
#include <QStandardPaths>
#include <QVariantMap>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto serverName = u"org.freedesktop.Notifications"_s;
const auto serverPath = u"/org/freedesktop/Notifications"_s;
const auto applicationId = u"app.kelvo.Kelvo"_s;
/// The action that a click on the notification itself invokes.
const auto defaultAction = u"default"_s;
constexpr int iconSide = 64;

/// The value of the "image-data" hint of a notification.
struct ImageData
{
    QImage image; ///< Format_RGBA8888
};

QDBusArgument &operator<<(QDBusArgument &argument, const ImageData &data)
{
    const auto &image = data.image;
    const auto pixels = QByteArray::fromRawData(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
    argument.beginStructure();
    argument << image.width() << image.height() << static_cast<int>(image.bytesPerLine()) << true << 8 << 4 << pixels;
    argument.endStructure();
    return argument;
}

// The type is only sent, but qDBusRegisterMetaType requires both operators.
const QDBusArgument &operator>>(const QDBusArgument &argument, ImageData &)
{
    return argument;
}

QDBusMessage serverCall(const QString &method)
{
    return QDBusMessage::createMethodCall(serverName, serverPath, serverName, method);
}

QString escaped(QString text)
{
    return text.replace(u'&', "&amp;"_L1).replace(u'<', "&lt;"_L1).replace(u'>', "&gt;"_L1);
}

/// Whether the call did not reach the bus, or the bus found no server for it and could not start one. After any other
/// error, such as that of a server that ends before it answers, a server may have shown the notification.
bool nobodyReceived(const QDBusMessage &error)
{
    return error.errorName() == "org.freedesktop.DBus.Error.Disconnected"_L1
        || error.errorName() == "org.freedesktop.DBus.Error.ServiceUnknown"_L1
        || error.errorName().startsWith("org.freedesktop.DBus.Error.Spawn."_L1);
}

/// Whether a notification server can find the application icon by its name. QIcon::hasThemeIcon() answers this too, but
/// reads all directories of the icon themes first, and keeps them in memory.
bool isIconInstalled()
{
    return !QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                   u"icons/hicolor/scalable/apps/%1.svg"_s.arg(applicationId))
                .isEmpty();
}

/// The application icon as an "image-data" hint; invalid when no icon is set.
QVariant iconPicture()
{
    const auto image = QGuiApplication::windowIcon().pixmap(QSize(iconSide, iconSide), 1.0).toImage();
    if (image.isNull()) {
        return {};
    }
    qDBusRegisterMetaType<ImageData>();
    return QVariant::fromValue(ImageData{image.convertToFormat(QImage::Format_RGBA8888)});
}

} // namespace

DBusNotificationCenter::DBusNotificationCenter(std::shared_ptr<BusConnection> sessionBus, const QStringList &desktops,
                                               std::chrono::milliseconds timeout, std::chrono::milliseconds patience)
    : bus_(std::move(sessionBus))
    , server_(bus_, serverName)
    , settings_(desktops)
    , timeout_(timeout)
    , patience_(patience)
    , hasBus_(bus_->isConnected())
{
    const auto listen = [this](const QString &signal, const char *slot) {
        server_.listen(serverPath, serverName, signal, this, slot);
    };
    listen(u"ActivationToken"_s, SLOT(onActivationToken(uint, QString)));
    listen(u"ActionInvoked"_s, SLOT(onActionInvoked(uint, QString)));
    listen(u"NotificationClosed"_s, SLOT(onNotificationClosed(uint, uint)));
    connect(&server_, &BusNameOwner::changed, this, &DBusNotificationCenter::onServerChanged);
    connect(bus_.get(), &BusConnection::connected, this, &DBusNotificationCenter::onConnected);
    connect(bus_.get(), &BusConnection::disconnected, &server_, [this] { question_.reset(); });
}

bool DBusNotificationCenter::canServeThisProcess() const
{
    return hasBus_;
}

QFuture<AuthorizationStatus> DBusNotificationCenter::authorizationStatus()
{
    const auto promise = std::make_shared<QPromise<AuthorizationStatus>>();
    promise->start();
    const auto finish = [promise](bool authorized) {
        promise->addResult(authorized ? AuthorizationStatus::authorized : AuthorizationStatus::notDetermined);
        promise->finish();
    };
    if (!bus_->isConnected() || server_.isOwned()) {
        finish(server_.isOwned());
        return promise->future();
    }

    const auto ask = [this](const QString &method, auto then) {
        bus_->call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                  u"org.freedesktop.DBus"_s, method),
                   &server_, [then](const QDBusMessage &answer) {
                       then(answer.arguments().value(0).toStringList().contains(serverName));
                   });
    };
    ask(u"ListNames"_s, [ask, finish](bool running) {
        if (running) {
            finish(true);
        } else {
            ask(u"ListActivatableNames"_s, finish);
        }
    });
    return promise->future();
}

QFuture<void> DBusNotificationCenter::requestAuthorization()
{
    QPromise<void> promise;
    promise.start();
    promise.finish();
    return promise.future();
}

void DBusNotificationCenter::add(const LocalNotification &notification)
{
    const Pending pending{notification, QDeadlineTimer(patience_)};
    if (capabilities_) {
        post(pending);
        return;
    }
    wait(pending);
    if (bus_->isConnected() && !question_) {
        askCapabilities();
    }
}

void DBusNotificationCenter::onConnected()
{
    hasBus_ = true;
    if (!waiting_.isEmpty() && !question_) {
        askCapabilities();
    }
}

void DBusNotificationCenter::onServerChanged()
{
    capabilities_.reset();
    shown_.clear();
    if (server_.isOwned()) {
        askCapabilities();
    }
}

void DBusNotificationCenter::askCapabilities()
{
    question_ = std::make_unique<QObject>();
    const auto answered = [this](const QDBusMessage &answer) {
        question_.release()->deleteLater();
        if (answer.type() == QDBusMessage::ReplyMessage) {
            capabilities_ = answer.arguments().value(0).toStringList();
        }
        // If the server answered with an error or not in time, the notifications are posted as plain text.
        for (const auto &pending : std::exchange(waiting_, {})) {
            if (!pending.until.hasExpired()) {
                post(pending);
            }
        }
    };
    bus_->call(serverCall(u"GetCapabilities"_s), question_.get(), answered, timeout_);
}

void DBusNotificationCenter::post(const Pending &pending)
{
    const auto &notification = pending.notification;
    const bool readsMarkup = capabilities_ && capabilities_->contains("body-markup"_L1);
    // Some servers without this capability show a dialog for a notification with actions.
    const bool hasActions = capabilities_ && capabilities_->contains("actions"_L1);
    QVariantMap hints{
        {u"desktop-entry"_s, applicationId},
        {u"suppress-sound"_s, true},
        {u"urgency"_s, QVariant::fromValue<uchar>(1)},
    };
    // A server shows a broken image for an icon name that it cannot find.
    const bool hasIconName = isIconInstalled();
    if (const auto picture = hasIconName ? QVariant() : iconPicture(); picture.isValid()) {
        hints.insert(u"image-data"_s, picture);
    }
    auto call = serverCall(u"Notify"_s);
    call << u"Kelvo"_s << 0U << (hasIconName ? applicationId : QString()) << notification.title
         << (readsMarkup ? escaped(notification.body) : notification.body)
         << (hasActions ? QStringList{defaultAction, u"Open Kelvo"_s} : QStringList()) << hints << -1;
    bus_->call(call, this, [this, pending](const QDBusMessage &answer) {
        if (answer.type() == QDBusMessage::ReplyMessage) {
            shown_.insert(answer.arguments().value(0).toUInt());
        } else if (nobodyReceived(answer)) {
            wait(pending);
        }
    });
}

/// Keeps the notification for the next server. All have the same patience, so that in the order of their deadlines they are
/// in the order in which they were added.
void DBusNotificationCenter::wait(const Pending &pending)
{
    const auto place = std::upper_bound(
        waiting_.begin(), waiting_.end(), pending,
        [](const Pending &left, const Pending &right) { return left.until < right.until; });
    waiting_.insert(place, pending);
}

// Servers send their signals to all clients, so the notification may belong to another one.

void DBusNotificationCenter::onActivationToken(uint id, const QString &token)
{
    if (shown_.contains(id)) {
        ActivationToken::keep(token);
    }
}

void DBusNotificationCenter::onActionInvoked(uint id, const QString &action)
{
    if (shown_.contains(id) && action == defaultAction) {
        Q_EMIT activated();
    }
}

void DBusNotificationCenter::onNotificationClosed(uint id, uint)
{
    shown_.remove(id);
}

} // namespace kelvo
