#include "platform/linux/DBusNotificationCenter.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QPromise>
#include <QVariantMap>

#include <utility>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto serverName = u"org.freedesktop.Notifications"_s;
const auto applicationId = u"app.kelvo.Kelvo"_s;
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
    return QDBusMessage::createMethodCall(serverName, u"/org/freedesktop/Notifications"_s, serverName, method);
}

QString escaped(QString text)
{
    return text.replace(u'&', "&amp;"_L1).replace(u'<', "&lt;"_L1).replace(u'>', "&gt;"_L1);
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

DBusNotificationCenter::DBusNotificationCenter(std::shared_ptr<BusConnection> sessionBus)
    : bus_(std::move(sessionBus))
    , server_(bus_, serverName)
{
    QObject::connect(&server_, &BusNameOwner::changed, &server_, [this] { onServerChanged(); });
    QObject::connect(bus_.get(), &BusConnection::disconnected, &server_, [this] {
        question_.reset();
        waiting_.clear();
    });
}

bool DBusNotificationCenter::canServeThisProcess() const
{
    return bus_->isConnected();
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
    if (!bus_->isConnected()) {
        return;
    }
    if (capabilities_) {
        post(notification);
        return;
    }
    waiting_.append(notification);
    if (!question_) {
        askCapabilities();
    }
}

void DBusNotificationCenter::onServerChanged()
{
    capabilities_.reset();
    if (server_.isOwned()) {
        askCapabilities();
    }
}

void DBusNotificationCenter::askCapabilities()
{
    question_ = std::make_unique<QObject>();
    bus_->call(serverCall(u"GetCapabilities"_s), question_.get(), [this](const QDBusMessage &answer) {
        question_.release()->deleteLater();
        if (answer.type() == QDBusMessage::ReplyMessage) {
            capabilities_ = answer.arguments().value(0).toStringList();
        }
        // If the server answered with an error, the notifications are posted as plain text.
        for (const auto &notification : std::exchange(waiting_, {})) {
            post(notification);
        }
    });
}

void DBusNotificationCenter::post(const LocalNotification &notification)
{
    const bool readsMarkup = capabilities_ && capabilities_->contains("body-markup"_L1);
    QVariantMap hints{
        {u"desktop-entry"_s, applicationId},
        {u"suppress-sound"_s, true},
        {u"urgency"_s, QVariant::fromValue<uchar>(1)},
    };
    // A server shows a broken image for an icon name that it cannot find.
    const bool isInstalled = QIcon::hasThemeIcon(applicationId);
    if (const auto picture = iconPicture(); !isInstalled && picture.isValid()) {
        hints.insert(u"image-data"_s, picture);
    }
    auto call = serverCall(u"Notify"_s);
    call << u"Kelvo"_s << 0U << (isInstalled ? applicationId : QString()) << notification.title
         << (readsMarkup ? escaped(notification.body) : notification.body) << QStringList() << hints << -1;
    bus_->connection().asyncCall(call);
}

} // namespace kelvo
