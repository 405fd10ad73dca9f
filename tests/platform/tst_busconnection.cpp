#include "platform/linux/BusConnection.h"
#include "platform/linux/BusNameOwner.h"
#include "support/PrivateBus.h"
#include "support/ThreadBound.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <chrono>
#include <cstring>
#include <mutex>
#include <thread>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// The number of files and directories that this process watches.
int watches()
{
    int count = 0;
    for (const auto &entry : QDir(u"/proc/self/fdinfo"_s).entryInfoList(QDir::Files)) {
        QFile file(entry.filePath());
        if (file.open(QIODevice::ReadOnly)) {
            count += static_cast<int>(file.readAll().count("inotify wd:"));
        }
    }
    return count;
}

/// A server that closes each connection at once, like a bus that cannot serve yet.
class BusyServer
{
public:
    using Instant = std::chrono::steady_clock::time_point;

    explicit BusyServer(const QByteArray &path)
        : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.constData(), sizeof address.sun_path - 1);
        if (::bind(socket_, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0
            || ::listen(socket_, 8) != 0) {
            qFatal("cannot listen at %s", path.constData());
        }
        thread_ = std::thread([this] { serve(); });
    }
    ~BusyServer()
    {
        ::shutdown(socket_, SHUT_RDWR); // ends the wait of the thread
        thread_.join();
        ::close(socket_);
    }
    BusyServer(const BusyServer &) = delete;
    BusyServer &operator=(const BusyServer &) = delete;

    /// When somebody connected.
    std::vector<Instant> connections() const
    {
        const std::lock_guard lock(mutex_);
        return connections_;
    }

private:
    void serve()
    {
        for (int client = 0; (client = ::accept(socket_, nullptr, nullptr)) >= 0;) {
            {
                const std::lock_guard lock(mutex_);
                connections_.push_back(std::chrono::steady_clock::now());
            }
            ::close(client);
        }
    }

    int socket_;
    mutable std::mutex mutex_;
    std::vector<Instant> connections_;
    std::thread thread_;
};

} // namespace

/// Records what its slots are called with.
class Listener : public QObject
{
    Q_OBJECT

public:
    QVariantList heard;

public Q_SLOTS:
    void onNumber(int number) { heard.append(number); }
    void onText(const QString &text) { heard.append(text); }
    void onNothing() { heard.append(u"nothing"_s); }
    void onObject(QObject *) { }
    void onMessage(const QDBusMessage &signal) { heard.append(signal.member()); }
};

class BusConnectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void connectsAtOnceToARunningBus();
    void connectsToABusThatStartsLater();
    void connectsAgainAfterTheBusRestarts();
    void triesABusyServerAgainAfterGrowingWaits();
    void closesItsConnection();
    void doesNothingWithoutAnAddress();
    void watchesNoDirectoryForAnAddressWithoutAFile();
    void findsTheSessionBusInTheRuntimeDirectory();
    void reportsASlotThatCannotReceiveTheSignal();
    void hearsOnlySignalsWithTheFirstArgument();
    void hearsAgainAfterTheBusRestarts();
    void forgetsAReceiverThatIsDestroyed();
    void touchesNoReceiverWhenItEnds();
    void touchesNoReceiverWhenTheBusEnds();
    void keepsNothingOfACallThatWasAnswered();
    void followsTheOwnerOfAName();
    void followsTheOwnerOfANameAcrossARestartOfTheBus();
    void startsAServiceOnDemandOnly();
    void survivesABusThatDiesWhenANameAppears();
    void hearsTheSignalsOfTheOwnerOnly();
};

void BusConnectionTest::connectsAtOnceToARunningBus()
{
    PrivateBus daemon;
    daemon.start();
    const BusConnection bus(daemon.address());
    QVERIFY(bus.isConnected());
    QVERIFY(bus.connection().isConnected());
}

void BusConnectionTest::connectsToABusThatStartsLater()
{
    PrivateBus daemon;
    const auto before = watches();
    BusConnection bus(daemon.address());
    const QSignalSpy connected(&bus, &BusConnection::connected);
    QVERIFY(!bus.isConnected());
    QCOMPARE(watches(), before + 1);

    daemon.start();
    QTRY_COMPARE(connected.count(), 1);
    QVERIFY(bus.isConnected());
    QCOMPARE(watches(), before);
}

void BusConnectionTest::connectsAgainAfterTheBusRestarts()
{
    PrivateBus daemon;
    daemon.start();
    BusConnection bus(daemon.address());
    const QSignalSpy connected(&bus, &BusConnection::connected);
    const QSignalSpy disconnected(&bus, &BusConnection::disconnected);
    connect(&bus, &BusConnection::disconnected, this, [&bus] { QVERIFY(!bus.isConnected()); });

    for (int round = 1; round <= 3; ++round) {
        daemon.kill();
        QTRY_COMPARE(disconnected.count(), round);
        QVERIFY(!bus.isConnected());
        QVERIFY(bus.connection().name().isEmpty()); // the one that was lost is released

        daemon.start();
        QTRY_COMPARE(connected.count(), round);
        QVERIFY(bus.isConnected());
    }
}

void BusConnectionTest::triesABusyServerAgainAfterGrowingWaits()
{
    using namespace std::chrono_literals;
    const QTemporaryDir directory;
    const auto path = directory.filePath(u"bus"_s);
    const BusyServer server(QFile::encodeName(path));
    const BusConnection bus("unix:path="_L1 + path);
    QTRY_VERIFY(server.connections().size() >= 4);
    QVERIFY(!bus.isConnected());
    const auto connections = server.connections();
    // 200 and 400 ms. A timer may be early by five percent, and late by any time.
    QVERIFY(connections[3] - connections[1] > 500ms);
}

void BusConnectionTest::closesItsConnection()
{
    PrivateBus daemon;
    daemon.start();
    const auto observer = daemon.connect();
    const auto names = [&observer] {
        return observer
            .call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s,
                                                 u"ListNames"_s))
            .arguments()
            .value(0)
            .toStringList()
            .size();
    };
    const auto before = names();
    {
        const BusConnection bus(daemon.address());
        QCOMPARE(names(), before + 1);
    }
    QTRY_COMPARE(names(), before);
    QDBusConnection::disconnectFromBus(observer.name());
}

void BusConnectionTest::doesNothingWithoutAnAddress()
{
    const BusConnection bus({});
    QVERIFY(!bus.isConnected());
}

void BusConnectionTest::watchesNoDirectoryForAnAddressWithoutAFile()
{
    const auto before = watches();
    const BusConnection bus(u"unix:abstract=kelvo-no-bus"_s);
    QVERIFY(!bus.isConnected());
    QCOMPARE(watches(), before);

    const PrivateBus absent;
    const BusConnection waiting(absent.address());
    QCOMPARE(watches(), before + 1);
}

void BusConnectionTest::findsTheSessionBusInTheRuntimeDirectory()
{
    PrivateBus daemon;
    daemon.start();
    qputenv("DBUS_SESSION_BUS_ADDRESS", "");
    qunsetenv("XDG_RUNTIME_DIR");
    QVERIFY(!BusConnection::session()->isConnected());
    qputenv("XDG_RUNTIME_DIR", QFileInfo(daemon.address().section(u'=', 1)).path().toUtf8());
    QVERIFY(BusConnection::session()->isConnected());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    QVERIFY(BusConnection::session()->isConnected());

    const PrivateBus absent;
    qputenv("DBUS_SESSION_BUS_ADDRESS", absent.address().toUtf8());
    QVERIFY(!BusConnection::session()->isConnected());
}

void BusConnectionTest::reportsASlotThatCannotReceiveTheSignal()
{
    PrivateBus daemon;
    daemon.start();
    BusConnection bus(daemon.address());
    Listener listener;
    QTest::failOnWarning(QRegularExpression(u"cannot listen"_s)); // newer versions of Qt add a warning of their own
    const auto subscribe = [&](const char *slot) {
        bus.subscribe(u"/org/example"_s, u"org.example"_s, u"Number"_s, &listener, slot);
    };
    subscribe(SLOT(onNumber(int)));
    QTest::ignoreMessage(QtWarningMsg, "cannot listen to \"org.example\" \"Number\"");
    subscribe(SLOT(onObject(QObject *)));

    daemon.kill();
    QTRY_VERIFY(!bus.isConnected());
    subscribe(SLOT(onNumber(int)));
}

void BusConnectionTest::hearsOnlySignalsWithTheFirstArgument()
{
    PrivateBus daemon;
    daemon.start();
    BusConnection bus(daemon.address());
    const auto path = u"/org/example"_s;
    const auto interface = u"org.example"_s;
    Listener listener;
    bus.subscribe(path, interface, u"Text"_s, &listener, SLOT(onText(QString)), u"mine"_s);
    // The answer of the bus means that it knows the subscription.
    bus.connection().call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s, u"GetId"_s));
    const auto other = daemon.connect();
    for (const auto &text : {u"another"_s, u"mine"_s}) {
        auto signal = QDBusMessage::createSignal(path, interface, u"Text"_s);
        signal << text;
        other.send(signal);
    }
    QTRY_VERIFY(!listener.heard.isEmpty());
    QCOMPARE(listener.heard, QVariantList{u"mine"_s});
    QDBusConnection::disconnectFromBus(other.name());
}

void BusConnectionTest::hearsAgainAfterTheBusRestarts()
{
    PrivateBus daemon;
    daemon.start();
    BusConnection bus(daemon.address());
    const QSignalSpy connected(&bus, &BusConnection::connected);
    Listener listener;
    Listener former;
    const auto path = u"/org/example"_s;
    const auto interface = u"org.example"_s;
    bus.subscribe(path, interface, u"Number"_s, &listener, SLOT(onNumber(int)));
    bus.subscribe(path, interface, u"Text"_s, &listener, SLOT(onText(QString)), u"mine"_s);
    bus.subscribe(path, interface, u"Number"_s, &former, SLOT(onNumber(int)));
    bus.unsubscribe(path, interface, u"Number"_s, &former, SLOT(onNumber(int)));

    daemon.kill();
    QTRY_VERIFY(!bus.isConnected());
    daemon.start();
    QTRY_COMPARE(connected.count(), 1);
    bus.connection().call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s, u"GetId"_s));
    const auto other = daemon.connect();
    for (const auto &[member, argument] :
         {std::pair(u"Text"_s, QVariant(u"another"_s)), {u"Number"_s, 1}, {u"Text"_s, u"mine"_s}}) {
        auto signal = QDBusMessage::createSignal(path, interface, member);
        signal << argument;
        other.send(signal);
    }
    QTRY_COMPARE(listener.heard, (QVariantList{1, u"mine"_s}));
    QCOMPARE(former.heard, QVariantList());
    QDBusConnection::disconnectFromBus(other.name());
}

void BusConnectionTest::forgetsAReceiverThatIsDestroyed()
{
    QTest::failOnWarning(QRegularExpression(u"cannot listen"_s));
    PrivateBus daemon;
    daemon.start();
    BusConnection bus(daemon.address());
    const QSignalSpy connected(&bus, &BusConnection::connected);
    {
        Listener listener;
        bus.subscribe(u"/org/example"_s, u"org.example"_s, u"Number"_s, &listener, SLOT(onNumber(int)));
    }
    daemon.kill();
    QTRY_VERIFY(!bus.isConnected());
    daemon.start();
    QTRY_COMPARE(connected.count(), 1);
}

void BusConnectionTest::touchesNoReceiverWhenItEnds()
{
    PrivateBus daemon;
    daemon.start();
    ThreadBound<Listener> listener;
    {
        BusConnection bus(daemon.address());
        bus.subscribe(u"/org/example"_s, u"org.example"_s, u"Number"_s, &listener, SLOT(onNumber(int)));
    }
    // The thread of Qt's connections makes this one after it has closed the other.
    QDBusConnection::disconnectFromBus(daemon.connect().name());
    QCOMPARE(listener.touched(), 0);
}

void BusConnectionTest::touchesNoReceiverWhenTheBusEnds()
{
    PrivateBus daemon;
    daemon.start();
    ThreadBound<Listener> listener;
    BusConnection bus(daemon.address());
    const QSignalSpy connected(&bus, &BusConnection::connected);
    bus.subscribe(u"/org/example"_s, u"org.example"_s, u"Number"_s, &listener, SLOT(onNumber(int)));
    daemon.kill();
    QTRY_VERIFY(!bus.isConnected());
    daemon.start();
    QTRY_COMPARE(connected.count(), 1);
    QDBusConnection::disconnectFromBus(daemon.connect().name());
    QCOMPARE(listener.touched(), 0);
}

void BusConnectionTest::keepsNothingOfACallThatWasAnswered()
{
    PrivateBus daemon;
    daemon.start();
    const BusConnection bus(daemon.address());
    QObject context;
    int answers = 0;
    bus.call(ownerQuestion(u"org.freedesktop.DBus"_s), &context, [&](const QDBusMessage &) { ++answers; });
    QTRY_COMPARE(answers, 1);
    QTRY_VERIFY(context.children().isEmpty());
}

void BusConnectionTest::followsTheOwnerOfAName()
{
    PrivateBus daemon;
    daemon.start();
    const auto bus = std::make_shared<BusConnection>(daemon.address());
    auto first = std::make_unique<BusService>(daemon, u"org.example.Service"_s, u"/"_s, this,
                                              QDBusConnection::ExportScriptableSlots);

    BusNameOwner name(bus, u"org.example.Service"_s);
    QSignalSpy changed(&name, &BusNameOwner::changed);
    QTRY_COMPARE(name.owner(), first->connection().baseService());

    first.reset();
    QTRY_VERIFY(!name.isOwned());

    const BusService second(daemon, u"org.example.Service"_s, u"/"_s, this, QDBusConnection::ExportScriptableSlots);
    QTRY_VERIFY(name.isOwned());
    QCOMPARE(changed.count(), 3);
}

void BusConnectionTest::followsTheOwnerOfANameAcrossARestartOfTheBus()
{
    PrivateBus daemon;
    daemon.start();
    const auto bus = std::make_shared<BusConnection>(daemon.address());
    auto service = std::make_unique<BusService>(daemon, u"org.example.Service"_s, u"/"_s, this,
                                                QDBusConnection::ExportScriptableSlots);
    const BusNameOwner name(bus, u"org.example.Service"_s);
    QTRY_VERIFY(name.isOwned());

    daemon.kill();
    QTRY_VERIFY(!name.isOwned());

    daemon.start();
    service = std::make_unique<BusService>(daemon, u"org.example.Service"_s, u"/"_s, this,
                                           QDBusConnection::ExportScriptableSlots);
    QTRY_VERIFY(name.isOwned());
}

void BusConnectionTest::startsAServiceOnDemandOnly()
{
    PrivateBus daemon;
    daemon.start();
    const QTemporaryDir started;
    for (const auto &name : {u"org.example.Passive"_s, u"org.example.OnDemand"_s}) {
        daemon.addActivatable(name, u"/bin/sh -c 'touch %1; sleep 10'"_s.arg(started.filePath(name)));
    }
    const auto bus = std::make_shared<BusConnection>(daemon.address());
    const BusNameOwner passive(bus, u"org.example.Passive"_s);
    const BusNameOwner onDemand(bus, u"org.example.OnDemand"_s, BusNameOwner::Start::onDemand);
    QTRY_VERIFY(QFile::exists(started.filePath(u"org.example.OnDemand"_s)));
    QVERIFY(!QFile::exists(started.filePath(u"org.example.Passive"_s)));
}

// The bus dies after it has announced the owner of the name, and before the program has heard of either.
void BusConnectionTest::survivesABusThatDiesWhenANameAppears()
{
    PrivateBus daemon;
    daemon.start();
    const auto bus = std::make_shared<BusConnection>(daemon.address());
    BusNameOwner name(bus, u"org.example.Service"_s);
    const QSignalSpy changed(&name, &BusNameOwner::changed);
    Listener listener;
    name.listen(u"/"_s, u"org.example"_s, u"Number"_s, &listener, SLOT(onNumber(int)));
    // The answer of the bus means that it has received what was sent before.
    auto connection = bus->connection();
    connection.call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s, u"GetId"_s));
    {
        const BusService service(daemon, u"org.example.Service"_s, u"/"_s, this,
                                 QDBusConnection::ExportScriptableSlots);
        connection.call(
            QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s, u"GetId"_s));
        daemon.kill();
    }
    while (connection.isConnected()) {
        QThread::yieldCurrentThread();
    }
    QTRY_COMPARE(changed.count(), 2);
    QVERIFY(!name.isOwned());
    QVERIFY(!bus->isConnected());
}

void BusConnectionTest::hearsTheSignalsOfTheOwnerOnly()
{
    PrivateBus daemon;
    daemon.start();
    const auto bus = std::make_shared<BusConnection>(daemon.address());
    BusNameOwner name(bus, u"org.example.Service"_s);
    Listener listener;
    const auto path = u"/org/example"_s;
    const auto interface = u"org.example"_s;
    const auto signal = [&](const QString &member, const QVariantList &arguments, const QString &from = {}) {
        auto message = QDBusMessage::createSignal(from.isEmpty() ? path : from, interface, member);
        message.setArguments(arguments);
        return message;
    };
    name.listen(path, interface, u"Number"_s, &listener, SLOT(onNumber(int)));
    name.listen(path, interface, u"Event"_s, &listener, SLOT(onNothing()));

    BusService service(daemon, u"org.example.Service"_s, path, this, QDBusConnection::ExportScriptableSlots);
    QTRY_VERIFY(name.isOwned());
    name.listen(path, interface, u"Anything"_s, &listener, SLOT(onMessage(QDBusMessage)));
    auto other = daemon.connect();
    other.send(signal(u"Number"_s, {1}));
    auto impostor = QDBusMessage::createSignal(u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
                                               u"NameOwnerChanged"_s);
    impostor.setArguments({u"org.example.Service"_s, name.owner(), other.baseService()});
    other.send(impostor);
    QVERIFY(other
                .call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s,
                                                     u"GetId"_s))
                .type()
            == QDBusMessage::ReplyMessage);
    service.connection().send(signal(u"Number"_s, {u"of another type"_s}));
    service.connection().send(signal(u"Number"_s, {}));
    service.connection().send(signal(u"Number"_s, {2}, u"/elsewhere"_s));
    service.connection().send(signal(u"Number"_s, {3, u"and more"_s}));
    service.connection().send(signal(u"Event"_s, {4}));
    service.connection().send(signal(u"Anything"_s, {5}));
    QTRY_COMPARE(listener.heard, (QVariantList{3, u"nothing"_s, u"Anything"_s}));
    QDBusConnection::disconnectFromBus(other.name());
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::BusConnectionTest)
#include "tst_busconnection.moc"
