#include "platform/linux/DBusSingleInstance.h"
#include "support/PrivateBus.h"
#include "support/ThreadBound.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusPendingReply>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

using Outcome = SingleInstance::Outcome;

const auto childFlag = u"--child"_s;

/// An owner of the name that never answers, as a process that hangs.
class HangingInstance : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap &) { setDelayedReply(true); }
};

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
    void releasesTheNameWhenItsConnectionGoesOn();
    void passesTheActivationTokenOn_data();
    void passesTheActivationTokenOn();
    void takesTheActivationTokenOfTheDesktop_data();
    void takesTheActivationTokenOfTheDesktop();
    void reportsAnInstanceThatDoesNotAnswer();
    void reportsAnOwnerThatAnswersWithAnError();
    void runsWhenTheBusRefusesTheName();
    void runsWithoutABus();
    void claimsTheNameOnABusThatStartsLater();
    void claimsTheNameAgainOnARestartedBus();
    void isNotTouchedByALostConnection();

private:
    std::unique_ptr<DBusSingleInstance> instance() const
    {
        return std::make_unique<DBusSingleInstance>(std::make_shared<BusConnection>(daemon_->address()));
    }
    int startAnother(const QStringList &variables = {}) const;

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

// The second instance blocks until the first one answers, and reads the environment that it was started with, so it is a
// process of its own. Returns its outcome, or -1 when it does not end.
int DBusSingleInstanceTest::startAnother(const QStringList &variables) const
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto &variable : variables) {
        environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    }
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), {childFlag, daemon_->address()});
    const bool ended = QTest::qWaitFor([&] { return child.state() == QProcess::NotRunning; });
    return ended && child.exitStatus() == QProcess::NormalExit ? child.exitCode() : -1;
}

void DBusSingleInstanceTest::isTheInstanceWhenThereIsNoOther()
{
    daemon_->start();
    QCOMPARE(instance()->acquire(), Outcome::acquired);
}

void DBusSingleInstanceTest::handsOverToTheRunningInstance()
{
    daemon_->start();
    const auto first = instance();
    const QSignalSpy activated(first.get(), &SingleInstance::activationRequested);
    QCOMPARE(first->acquire(), Outcome::acquired);
    QCOMPARE(startAnother(), int(Outcome::handedOver));
    QCOMPARE(activated.count(), 1);
    QCOMPARE(startAnother(), int(Outcome::handedOver));
    QCOMPARE(activated.count(), 2);
}

void DBusSingleInstanceTest::implementsTheApplicationInterface()
{
    daemon_->start();
    const auto first = instance();
    const QSignalSpy activated(first.get(), &SingleInstance::activationRequested);
    QCOMPARE(first->acquire(), Outcome::acquired);

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
    QCOMPARE(first->acquire(), Outcome::acquired);
    first.reset();
    QCOMPARE(instance()->acquire(), Outcome::acquired);
}

void DBusSingleInstanceTest::releasesTheNameWhenItsConnectionGoesOn()
{
    daemon_->start();
    const auto bus = std::make_shared<BusConnection>(daemon_->address());
    auto first = std::make_unique<DBusSingleInstance>(bus);
    QCOMPARE(first->acquire(), Outcome::acquired);
    first.reset();
    QVERIFY(bus->isConnected());
    QCOMPARE(instance()->acquire(), Outcome::acquired);
}

void DBusSingleInstanceTest::passesTheActivationTokenOn_data()
{
    QTest::addColumn<QStringList>("variables");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("Wayland") << QStringList{u"XDG_ACTIVATION_TOKEN=a token"_s} << "a token"_ba;
    QTest::newRow("X11") << QStringList{u"DESKTOP_STARTUP_ID=an id_TIME42"_s} << "an id_TIME42"_ba;
    QTest::newRow("both") << QStringList{u"DESKTOP_STARTUP_ID=an id"_s, u"XDG_ACTIVATION_TOKEN=a=b"_s} << "a=b"_ba;
    QTest::newRow("neither") << QStringList() << QByteArray();
}

void DBusSingleInstanceTest::passesTheActivationTokenOn()
{
    QFETCH(QStringList, variables);
    QFETCH(QByteArray, expected);
    qunsetenv("XDG_ACTIVATION_TOKEN");
    qunsetenv("DESKTOP_STARTUP_ID");
    daemon_->start();
    const auto first = instance();
    QByteArray token = "not activated";
    connect(first.get(), &SingleInstance::activationRequested, this,
            [&token] { token = qgetenv("XDG_ACTIVATION_TOKEN"); });
    QCOMPARE(first->acquire(), Outcome::acquired);
    QCOMPARE(startAnother(variables), int(Outcome::handedOver));
    QCOMPARE(token, expected);
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

void DBusSingleInstanceTest::takesTheActivationTokenOfTheDesktop_data()
{
    QTest::addColumn<QVariantMap>("platformData");
    QTest::addColumn<QByteArray>("expected");
    const auto token = std::pair(u"activation-token"_s, QVariant(u"a token"_s));
    const auto id = std::pair(u"desktop-startup-id"_s, QVariant(u"an id"_s));
    QTest::newRow("Wayland") << QVariantMap{token} << "a token"_ba;
    QTest::newRow("X11") << QVariantMap{id} << "an id"_ba;
    QTest::newRow("both") << QVariantMap{token, id} << "a token"_ba;
}

void DBusSingleInstanceTest::takesTheActivationTokenOfTheDesktop()
{
    QFETCH(QVariantMap, platformData);
    QFETCH(QByteArray, expected);
    qunsetenv("XDG_ACTIVATION_TOKEN");
    daemon_->start();
    const auto first = instance();
    const QSignalSpy activated(first.get(), &SingleInstance::activationRequested);
    QCOMPARE(first->acquire(), Outcome::acquired);
    auto activate = applicationCall(u"Activate"_s);
    activate << platformData;
    daemon_->connect().send(activate);
    QTRY_COMPARE(activated.count(), 1);
    QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), expected);
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

void DBusSingleInstanceTest::reportsAnInstanceThatDoesNotAnswer()
{
    daemon_->start();
    HangingInstance hanging;
    const BusService owner(*daemon_, u"app.kelvo.Kelvo"_s, u"/app/kelvo/Kelvo"_s, &hanging,
                           QDBusConnection::ExportScriptableSlots);
    QCOMPARE(startAnother(), int(Outcome::noAnswer));
}

void DBusSingleInstanceTest::reportsAnOwnerThatAnswersWithAnError()
{
    daemon_->start();
    // This owner has the name but not the object.
    const BusService owner(*daemon_, u"app.kelvo.Kelvo"_s, u"/elsewhere"_s, this,
                           QDBusConnection::ExportScriptableSlots);
    QCOMPARE(startAnother(), int(Outcome::noAnswer));
}

void DBusSingleInstanceTest::runsWhenTheBusRefusesTheName()
{
    daemon_->refuse(u"app.kelvo.Kelvo"_s);
    daemon_->start();
    QCOMPARE(startAnother(), int(Outcome::acquired));
}

void DBusSingleInstanceTest::runsWithoutABus()
{
    QCOMPARE(instance()->acquire(), Outcome::acquired);
}

void DBusSingleInstanceTest::claimsTheNameOnABusThatStartsLater()
{
    const auto first = instance();
    const QSignalSpy activated(first.get(), &SingleInstance::activationRequested);
    QCOMPARE(first->acquire(), Outcome::acquired);
    daemon_->start();
    const auto desktop = daemon_->connect();
    QTRY_VERIFY(desktop.interface()->isServiceRegistered(u"app.kelvo.Kelvo"_s).value());
    QCOMPARE(startAnother(), int(Outcome::handedOver));
    QCOMPARE(activated.count(), 1);
}

void DBusSingleInstanceTest::claimsTheNameAgainOnARestartedBus()
{
    daemon_->start();
    const auto first = instance();
    const QSignalSpy activated(first.get(), &SingleInstance::activationRequested);
    QCOMPARE(first->acquire(), Outcome::acquired);
    daemon_->kill();
    daemon_->start();
    const auto desktop = daemon_->connect();
    QTRY_VERIFY(desktop.interface()->isServiceRegistered(u"app.kelvo.Kelvo"_s).value());
    QCOMPARE(startAnother(), int(Outcome::handedOver));
    QCOMPARE(activated.count(), 1);
}

void DBusSingleInstanceTest::isNotTouchedByALostConnection()
{
    daemon_->start();
    const auto bus = std::make_shared<BusConnection>(daemon_->address());
    ThreadBound<DBusSingleInstance> instance(bus);
    QCOMPARE(instance.acquire(), Outcome::acquired);
    daemon_->kill();
    QTRY_VERIFY(!bus->isConnected());
    daemon_->start();
    QTRY_VERIFY(bus->isConnected());
    // The thread of Qt's connections makes this one after it has closed the other.
    QDBusConnection::disconnectFromBus(daemon_->connect().name());
    QCOMPARE(instance.touched(), 0);
}

} // namespace kelvo

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1) == kelvo::childFlag) {
        kelvo::DBusSingleInstance instance(std::make_shared<kelvo::BusConnection>(arguments.at(2)), 200ms);
        return int(instance.acquire());
    }
    kelvo::DBusSingleInstanceTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_dbussingleinstance.moc"
