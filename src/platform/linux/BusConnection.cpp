#include "platform/linux/BusConnection.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>
#include <QLoggingCategory>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

Q_LOGGING_CATEGORY(logBus, "kelvo.bus")

// The socket file appears shortly before its server listens, and a server can be busy. Six attempts with doubled waits
// cover about six seconds.
constexpr auto firstRetry = 100ms;
constexpr int maximumAttempts = 6;

QString sessionBusAddress()
{
    auto address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    const auto runtimeDirectory = qEnvironmentVariable("XDG_RUNTIME_DIR");
    // Without an address, libdbus would launch a bus of its own for this process.
    if (address.isEmpty() && !runtimeDirectory.isEmpty()) {
        return u"unix:path=%1/bus"_s.arg(runtimeDirectory);
    }
    return address;
}

QString systemBusAddress()
{
    return qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS", u"unix:path=/run/dbus/system_bus_socket"_s);
}

/// Returns the path of the first socket file in a bus address; empty when it names none.
QString socketPath(const QString &address)
{
    constexpr auto prefix = "unix:path="_L1;
    for (const auto &server : address.split(u';')) {
        if (server.startsWith(prefix)) {
            return QString::fromUtf8(
                QByteArray::fromPercentEncoding(server.section(u',', 0, 0).mid(prefix.size()).toUtf8()));
        }
    }
    return {};
}

std::shared_ptr<BusConnection> shared(std::weak_ptr<BusConnection> &slot, const QString &address)
{
    auto bus = slot.lock();
    if (!bus) {
        bus = std::make_shared<BusConnection>(address);
        slot = bus;
    }
    return bus;
}

} // namespace

BusConnection::BusConnection(const QString &address, QObject *parent)
    : QObject(parent)
    , address_(address)
    , socketPath_(socketPath(address))
    , connection_(QString())
{
    retry_.setSingleShot(true);
    connect(&retry_, &QTimer::timeout, this, &BusConnection::seek);
    connect(&directory_, &QFileSystemWatcher::directoryChanged, this, &BusConnection::onDirectoryChanged);
    subscribe(u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s, this,
              SLOT(onDisconnected()));
    seek();
}

BusConnection::~BusConnection()
{
    close();
}

std::shared_ptr<BusConnection> BusConnection::session()
{
    static std::weak_ptr<BusConnection> bus;
    return shared(bus, sessionBusAddress());
}

std::shared_ptr<BusConnection> BusConnection::system()
{
    static std::weak_ptr<BusConnection> bus;
    return shared(bus, systemBusAddress());
}

void BusConnection::subscribe(const QString &path, const QString &interface, const QString &member, QObject *receiver,
                              const char *slot, const QString &firstArgument)
{
    std::erase_if(subscriptions_, [](const Subscription &each) { return each.receiver.isNull(); });
    connectSlot(subscriptions_.emplace_back(Subscription{path, interface, member, receiver, slot, firstArgument}));
}

void BusConnection::unsubscribe(const QString &path, const QString &interface, const QString &member, QObject *receiver,
                                const char *slot, const QString &firstArgument)
{
    const Subscription subscription{path, interface, member, receiver, slot, firstArgument};
    std::erase(subscriptions_, subscription);
    disconnectSlot(subscription);
}

void BusConnection::connectSlot(const Subscription &to)
{
    // On a live connection, false means that the signature of the slot does not match. Qt does not report this.
    if (!connection_.connect({}, to.path, to.interface, to.member, to.arguments(), {}, to.receiver, to.slot)
        && connection_.isConnected()) {
        qCWarning(logBus) << "cannot listen to" << to.interface << to.member;
    }
}

void BusConnection::disconnectSlot(const Subscription &from)
{
    connection_.disconnect({}, from.path, from.interface, from.member, from.arguments(), {}, from.receiver, from.slot);
}

void BusConnection::call(const QDBusMessage &message, QObject *context,
                         std::function<void(const QDBusMessage &)> answered, std::chrono::milliseconds timeout) const
{
    const auto pending = connection_.asyncCall(message, static_cast<int>(timeout.count()));
    auto *watcher = new QDBusPendingCallWatcher(pending, context);
    connect(watcher, &QDBusPendingCallWatcher::finished, context, [answered = std::move(answered), watcher] {
        watcher->deleteLater();
        answered(watcher->reply());
    });
}

void BusConnection::onDisconnected()
{
    if (!isConnected_) {
        return;
    }
    isConnected_ = false;
    Q_EMIT disconnected();
    close();
    attempts_ = 0;
    seek();
}

bool BusConnection::open()
{
    static int serial = 0;
    const auto name = u"kelvo-bus-%1"_s.arg(++serial);
    connection_ = QDBusConnection::connectToBus(address_, name);
    // Before the question, so that a bus that dies meanwhile is noticed by the signal or by the question.
    for (const auto &subscription : subscriptions_) {
        if (subscription.receiver) {
            connectSlot(subscription);
        }
    }
    if (!connection_.isConnected()) {
        close();
        return false;
    }
    isConnected_ = true;
    return true;
}

void BusConnection::close()
{
    // Qt closes the connection later, in another thread, and uses the receivers there that it still has.
    for (const auto &subscription : subscriptions_) {
        disconnectSlot(subscription);
    }
    QDBusConnection::disconnectFromBus(connection_.name());
    connection_ = QDBusConnection(QString());
}

void BusConnection::seek()
{
    if (isConnected_ || address_.isEmpty()) {
        return;
    }
    watchForSocket();
    if (open()) {
        retry_.stop();
        watchDirectory({});
        Q_EMIT connected();
    } else if (socketChanged_.isValid() && attempts_ < maximumAttempts) {
        retry_.start(firstRetry * (1 << attempts_++));
    }
}

void BusConnection::watchForSocket()
{
    if (socketPath_.isEmpty()) {
        return;
    }
    QFileInfo directory(QFileInfo(socketPath_).absolutePath());
    while (!directory.isDir() && !directory.isRoot()) {
        directory.setFile(directory.absolutePath());
    }
    watchDirectory(directory.absoluteFilePath());
    socketChanged_ = QFileInfo(socketPath_).metadataChangeTime();
}

void BusConnection::watchDirectory(const QString &path)
{
    const auto watched = directory_.directories();
    if (watched.value(0) == path) {
        return;
    }
    if (!watched.isEmpty()) {
        directory_.removePaths(watched);
    }
    if (!path.isEmpty()) {
        directory_.addPath(path);
    }
}

void BusConnection::onDirectoryChanged()
{
    // Connect only when the socket file is new: the directory may change often, and an old socket file may be left over
    // from a dead server.
    const auto before = socketChanged_;
    watchForSocket();
    if (!isConnected_ && socketChanged_.isValid() && socketChanged_ != before) {
        attempts_ = 0;
        seek();
    }
}

} // namespace kelvo
