#include "platform/linux/DBusSingleInstance.h"
#include "support/PrivateBus.h"

#include <QDBusConnectionInterface>
#include <QDBusPendingReply>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <optional>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

QDBusMessage applicationCall(const QString &method)
{
    return QDBusMessage::createMethodCall(u"app.kelvo.Kelvo"_s, u"/app/kelvo/Kelvo"_s, u"org.freedesktop.Application"_s,
                                          method);
}

} // namespace

class DBusSingleInstanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void isTheInstanceWhenThereIsNoOther();
    void handsOverToTheRunningInstance();
    void implementsTheApplicationInterface();
    void releasesTheNameForTheNextStart();
    void exitsWhenTheOwnerAnswersWithAnError();
    void runsWithoutABus();
    void claimsTheNameOnABusThatStartsLater();
    void claimsTheNameAgainOnARestartedBus();

private:
    std::unique_ptr<DBusSingleInstance> instance() const
    {
        return std::make_unique<DBusSingleInstance>(std::make_shared<BusConnection>(daemon_->address()));
    }
    std::optional<bool> startAnother() const;

    std::unique_ptr<PrivateBus> daemon_;
};

void DBusSingleInstanceTest::init()
{
    daemon_ = std::make_unique<PrivateBus>();
}

void DBusSingleInstanceTest::cleanup()
{
    daemon_.reset();
}

// The second instance blocks until the first one answers, so it runs in another thread here.
std::optional<bool> DBusSingleInstanceTest::startAnother() const
{
    std::optional<bool> acquired;
    const std::unique_ptr<QThread> thread(QThread::create([&] { acquired = instance()->acquire(); }));
    thread->start();
    const bool ended = QTest::qWaitFor([&] { return thread->isFinished(); });
    thread->wait();
    return ended ? acquired : std::nullopt;
}

void DBusSingleInstanceTest::isTheInstanceWhenThereIsNoOther()
{
    daemon_->start();
    QVERIFY(instance()->acquire());
}

void DBusSingleInstanceTest::handsOverToTheRunningInstance()
{
    daemon_->start();
    const auto first = instance();
    const QSignalSpy activated(first.get(), &SingleInstance::activationRequested);
    QVERIFY(first->acquire());
    QCOMPARE(startAnother(), std::optional(false));
    QCOMPARE(activated.count(), 1);
    QCOMPARE(startAnother(), std::optional(false));
    QCOMPARE(activated.count(), 2);
}

void DBusSingleInstanceTest::implementsTheApplicationInterface()
{
    daemon_->start();
    const auto first = instance();
    const QSignalSpy activated(first.get(), &SingleInstance::activationRequested);
    QVERIFY(first->acquire());

    auto open = applicationCall(u"Open"_s);
    open << QStringList{u"file:///"_s} << QVariantMap();
    auto action = applicationCall(u"ActivateAction"_s);
    action << u"settings"_s << QVariantList() << QVariantMap();
    const auto desktop = daemon_->connect();
    for (const auto &call : {open, action}) {
        const auto before = activated.count();
        const QDBusPendingReply<> reply = desktop.asyncCall(call);
        QTRY_VERIFY(reply.isFinished());
        QVERIFY2(!reply.isError(), qPrintable(reply.error().message()));
        QCOMPARE(activated.count(), before + 1);
    }
}

void DBusSingleInstanceTest::releasesTheNameForTheNextStart()
{
    daemon_->start();
    auto first = instance();
    QVERIFY(first->acquire());
    first.reset();
    QVERIFY(instance()->acquire());
}

void DBusSingleInstanceTest::exitsWhenTheOwnerAnswersWithAnError()
{
    daemon_->start();
    // This owner has the name but not the object.
    const BusService owner(*daemon_, u"app.kelvo.Kelvo"_s, u"/elsewhere"_s, this,
                           QDBusConnection::ExportScriptableSlots);
    QCOMPARE(startAnother(), std::optional(false));
}

void DBusSingleInstanceTest::runsWithoutABus()
{
    QVERIFY(instance()->acquire());
}

void DBusSingleInstanceTest::claimsTheNameOnABusThatStartsLater()
{
    const auto first = instance();
    const QSignalSpy activated(first.get(), &SingleInstance::activationRequested);
    QVERIFY(first->acquire());
    daemon_->start();
    const auto desktop = daemon_->connect();
    QTRY_VERIFY(desktop.interface()->isServiceRegistered(u"app.kelvo.Kelvo"_s).value());
    QCOMPARE(startAnother(), std::optional(false));
    QCOMPARE(activated.count(), 1);
}

void DBusSingleInstanceTest::claimsTheNameAgainOnARestartedBus()
{
    daemon_->start();
    const auto first = instance();
    const QSignalSpy activated(first.get(), &SingleInstance::activationRequested);
    QVERIFY(first->acquire());
    daemon_->kill();
    daemon_->start();
    const auto desktop = daemon_->connect();
    QTRY_VERIFY(desktop.interface()->isServiceRegistered(u"app.kelvo.Kelvo"_s).value());
    QCOMPARE(startAnother(), std::optional(false));
    QCOMPARE(activated.count(), 1);
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::DBusSingleInstanceTest)
#include "tst_dbussingleinstance.moc"
