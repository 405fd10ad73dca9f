#include "platform/linux/BusConnection.h"
#include "platform/linux/BusNameOwner.h"
#include "support/PrivateBus.h"

#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelvo {

/// Counts the signals that arrive.
class Ear : public QObject
{
    Q_OBJECT

public:
    int heard = 0;

public Q_SLOTS:
    void hear() { ++heard; }
};

class BusConnectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void connectsAtOnceToARunningBus();
    void connectsToABusThatStartsLater();
    void connectsAgainAfterTheBusRestarts();
    void doesNothingWithoutAnAddress();
    void followsTheOwnerOfAName();
    void followsTheOwnerOfANameAcrossARestartOfTheBus();
    void hearsTheSignalsOfTheCurrentOwnerOnly();
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
    BusConnection bus(daemon.address());
    const QSignalSpy connected(&bus, &BusConnection::connected);
    QVERIFY(!bus.isConnected());

    daemon.start();
    QTRY_COMPARE(connected.count(), 1);
    QVERIFY(bus.isConnected());
}

void BusConnectionTest::connectsAgainAfterTheBusRestarts()
{
    PrivateBus daemon;
    daemon.start();
    BusConnection bus(daemon.address());
    const QSignalSpy connected(&bus, &BusConnection::connected);
    const QSignalSpy disconnected(&bus, &BusConnection::disconnected);

    for (int round = 1; round <= 3; ++round) {
        daemon.kill();
        QTRY_COMPARE(disconnected.count(), round);
        QVERIFY(!bus.isConnected());

        daemon.start();
        QTRY_COMPARE(connected.count(), round);
        QVERIFY(bus.isConnected());
    }
}

void BusConnectionTest::doesNothingWithoutAnAddress()
{
    const BusConnection bus({});
    QVERIFY(!bus.isConnected());
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

void BusConnectionTest::hearsTheSignalsOfTheCurrentOwnerOnly()
{
    PrivateBus daemon;
    daemon.start();
    const auto bus = std::make_shared<BusConnection>(daemon.address());
    const auto serve = [&] {
        return std::make_unique<BusService>(daemon, u"org.example.Service"_s, u"/"_s, this,
                                            QDBusConnection::ExportScriptableSlots);
    };
    const auto signal = QDBusMessage::createSignal(u"/"_s, u"org.example.Service"_s, u"Happened"_s);
    Ear early;
    Ear late;
    BusNameOwner name(bus, u"org.example.Service"_s);
    name.listen(u"/"_s, u"org.example.Service"_s, u"Happened"_s, &early, SLOT(hear()));
    auto first = serve();
    QTRY_VERIFY(name.isOwned());
    // The name has an owner already.
    name.listen(u"/"_s, u"org.example.Service"_s, u"Happened"_s, &late, SLOT(hear()));
    auto stranger = daemon.connect();
    stranger.send(signal);
    first->connection().send(signal);
    QTRY_COMPARE(late.heard, 1);
    QCOMPARE(early.heard, 1);

    first.reset();
    QTRY_VERIFY(!name.isOwned());
    const auto second = serve();
    QTRY_VERIFY(name.isOwned());
    second->connection().send(signal);
    QTRY_COMPARE(late.heard, 2);
    QCOMPARE(early.heard, 2);
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::BusConnectionTest)
#include "tst_busconnection.moc"
