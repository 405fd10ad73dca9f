#include "platform/linux/BusConnection.h"
#include "platform/linux/BusNameOwner.h"
#include "support/PrivateBus.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelvo {

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

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::BusConnectionTest)
#include "tst_busconnection.moc"
