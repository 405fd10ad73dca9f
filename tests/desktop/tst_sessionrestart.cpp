#include "KelvoProcess.h"

#include "support/FakeLogind.h"
#include "support/FakeNotificationServer.h"
#include "support/FakeStatusNotifierWatcher.h"
#include "support/PrivateBus.h"

#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <array>
#include <set>
#include <vector>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

/// The parts of a session that the program uses over D-Bus.
enum class Part { notifications, tray, sessionBus, systemBus, logind };

const std::vector<Part> allParts{Part::notifications, Part::tray, Part::sessionBus, Part::systemBus, Part::logind};

const char *name(Part part)
{
    constexpr std::array names{"notifications", "tray", "session bus", "system bus", "logind"};
    return names.at(static_cast<std::size_t>(part));
}

QString names(const std::vector<Part> &parts)
{
    QStringList names;
    for (const auto part : parts) {
        names.append(QLatin1StringView(name(part)));
    }
    return names.join(u", "_s);
}

/// A session whose parts stop and start. What depends on a bus stops with it and is back when the bus is back, unless it
/// was stopped itself.
class Session
{
public:
    Session()
    {
        for (const auto part : allParts) {
            start(part);
        }
    }

    void stop(Part part)
    {
        running_.erase(part);
        settle();
    }

    void start(Part part)
    {
        running_.insert(part);
        settle();
    }

    const PrivateBus &sessionBus() const { return sessionBus_; }
    const PrivateBus &systemBus() const { return systemBus_; }
    FakeNotificationServer *notifications() { return notifications_.get(); }
    const FakeStatusNotifierWatcher *tray() const { return tray_.get(); }
    FakeLogind &logind() { return *logind_; }

private:
    bool isUp(Part part) const { return running_.contains(part); }

    void settle()
    {
        const bool hasSession = isUp(Part::sessionBus);
        const bool hasSystem = isUp(Part::systemBus);
        end(notifications_, hasSession && isUp(Part::notifications));
        end(tray_, hasSession && isUp(Part::tray));
        end(logind_, hasSystem && isUp(Part::logind));
        run(sessionBus_, sessionRuns_, hasSession);
        run(systemBus_, systemRuns_, hasSystem);
        if (hasSession && isUp(Part::notifications) && !notifications_) {
            notifications_ = std::make_unique<FakeNotificationServer>(sessionBus_, QStringList{u"body"_s});
        }
        if (hasSession && isUp(Part::tray) && !tray_) {
            tray_ = std::make_unique<FakeStatusNotifierWatcher>(sessionBus_,
                                                                FakeStatusNotifierWatcher::Host::registered);
        }
        if (hasSystem && isUp(Part::logind) && !logind_) {
            logind_ = std::make_unique<FakeLogind>(systemBus_);
        }
    }

    template<typename Service>
    static void end(std::unique_ptr<Service> &service, bool stays)
    {
        if (!stays) {
            service.reset();
        }
    }

    static void run(PrivateBus &bus, bool &isRunning, bool runs)
    {
        if (runs && !isRunning) {
            bus.start();
        } else if (!runs && isRunning) {
            bus.kill();
        }
        isRunning = runs;
    }

    std::set<Part> running_;
    PrivateBus sessionBus_;
    PrivateBus systemBus_;
    bool sessionRuns_ = false;
    bool systemRuns_ = false;
    std::unique_ptr<FakeNotificationServer> notifications_;
    std::unique_ptr<FakeStatusNotifierWatcher> tray_;
    std::unique_ptr<FakeLogind> logind_;
};

/// One stop or start of a part.
struct Step
{
    Part part;
    bool starts;
};

using Steps = std::vector<Step>;

/// Stops the parts in one order and starts them in another.
Steps restart(const std::vector<Part> &stopped, const std::vector<Part> &started)
{
    Steps steps;
    for (const auto part : stopped) {
        steps.push_back({part, false});
    }
    for (const auto part : started) {
        steps.push_back({part, true});
    }
    return steps;
}

} // namespace

/// The session is restarted, in parts and as a whole, under a program that keeps running.
class SessionRestartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void theProgramKeepsItsPromise_data();
    void theProgramKeepsItsPromise();
    void anAlertWaitsForAServerThatRestarts_data();
    void anAlertWaitsForAServerThatRestarts();
    void aSilentNotificationServerDelaysNoAlert();
    void theProgramHasSaidNothing();

private:
    /// Lets the machine sleep and wake up until the program checks, which it does at once when it hears of it.
    bool wakes();
    void goDown();
    void comeBack();
    /// The texts of all notifications of the server that runs now.
    QStringList titles();
    int posts() const { return static_cast<int>(internet_->requestsTo(u"hooks.slack.com"_s).size()); }

    std::unique_ptr<Session> session_;
    std::unique_ptr<SimulatedInternet> internet_;
    std::unique_ptr<KelvoProcess> kelvo_;
};

void SessionRestartTest::initTestCase()
{
    session_ = std::make_unique<Session>();
    internet_ = std::make_unique<SimulatedInternet>();
    kelvo_ = std::make_unique<KelvoProcess>(*internet_);
    kelvo_->setEnvironment(u"DBUS_SESSION_BUS_ADDRESS"_s, session_->sessionBus().address());
    kelvo_->setEnvironment(u"DBUS_SYSTEM_BUS_ADDRESS"_s, session_->systemBus().address());
    kelvo_->writeSettings("[General]\nhasOnboarded=true\noutageAlertsEnabled=true\narmedChannel=slack\n"
                          "slackWebhookURL=https://hooks.slack.com/services/T0/B0/secret\n");
    kelvo_->start();
    QTRY_COMPARE(internet_->requestsTo(u"status.claude.com"_s).size(), 1);
}

void SessionRestartTest::cleanupTestCase()
{
    kelvo_.reset();
    session_.reset();
    internet_.reset();
}

bool SessionRestartTest::wakes()
{
    const auto checks = [this] { return internet_->requestsTo(u"status.claude.com"_s).size(); };
    const auto before = checks();
    for (int attempt = 0; attempt < 20; ++attempt) {
        session_->logind().prepareForSleep(true);
        session_->logind().prepareForSleep(false);
        if (QTest::qWaitFor([&] { return checks() > before; }, 1000)) {
            return true;
        }
    }
    return false;
}

void SessionRestartTest::goDown()
{
    internet_->setComponent(StatusPage::Claude, u"claude.ai"_s, u"major_outage"_s);
}

void SessionRestartTest::comeBack()
{
    internet_->setAllOperational(StatusPage::Claude);
}

QStringList SessionRestartTest::titles()
{
    QStringList titles;
    for (const auto &notification : session_->notifications()->notifications()) {
        titles.append(notification.summary);
    }
    return titles;
}

void SessionRestartTest::theProgramKeepsItsPromise_data()
{
    QTest::addColumn<Steps>("steps");
    for (const auto one : allParts) {
        QTest::addRow("%s", name(one)) << restart({one}, {one});
        for (const auto other : allParts) {
            if (one != other) {
                QTest::addRow("%s, then %s", name(one), name(other)) << restart({one, other}, {one, other});
            }
        }
    }
    const std::vector<Part> backwards(allParts.rbegin(), allParts.rend());
    QTest::newRow("all, the last first") << restart(allParts, backwards);
    auto order = allParts;
    do {
        QTest::newRow(qPrintable(u"all: "_s + names(order))) << restart(order, order);
    } while (std::next_permutation(order.begin(), order.end()));
    QTest::newRow("all, one after the other") << [&] {
        Steps steps;
        for (const auto part : allParts) {
            steps.push_back({part, false});
            steps.push_back({part, true});
        }
        return steps;
    }();
}

void SessionRestartTest::theProgramKeepsItsPromise()
{
    QFETCH(Steps, steps);
    for (const auto &[part, starts] : steps) {
        if (starts) {
            session_->start(part);
        } else {
            session_->stop(part);
        }
    }
    internet_->clearRequests();
    const auto shown = static_cast<int>(titles().size());

    // The ring is there, and the program can be found by another start.
    QTRY_COMPARE(session_->tray()->items().size(), 1);
    auto bus = session_->sessionBus().connect();
    QTRY_VERIFY(bus.interface()->isServiceRegistered(u"app.kelvo.Kelvo"_s));
    QVERIFY(bus.interface()->isServiceRegistered(session_->tray()->items().constFirst()));
    QDBusConnection::disconnectFromBus(bus.name());

    // An outage is told once, and so is its end.
    goDown();
    QVERIFY(wakes());
    QTRY_COMPARE(titles().mid(shown), QStringList{u"Claude is down"_s});
    QTRY_COMPARE(posts(), 1);
    comeBack();
    QVERIFY(wakes());
    const QStringList both{u"Claude is down"_s, u"Claude is back"_s};
    QTRY_COMPARE(titles().mid(shown), both);
    QTRY_COMPARE(posts(), 2);
    QVERIFY(wakes());
    QCOMPARE(titles().mid(shown), both);
    QCOMPARE(posts(), 2);
    QCOMPARE(session_->tray()->items().size(), 1);
    QVERIFY(kelvo_->isRunning());
}

void SessionRestartTest::anAlertWaitsForAServerThatRestarts_data()
{
    QTest::addColumn<Part>("part");
    QTest::newRow("notifications") << Part::notifications;
    QTest::newRow("session bus") << Part::sessionBus;
}

void SessionRestartTest::anAlertWaitsForAServerThatRestarts()
{
    QFETCH(Part, part);
    session_->stop(part);
    internet_->clearRequests();
    goDown();
    QVERIFY(wakes());
    QTRY_COMPARE(posts(), 1);
    comeBack();
    QVERIFY(wakes());
    QTRY_COMPARE(posts(), 2);

    session_->start(part);
    QTRY_COMPARE(titles(), (QStringList{u"Claude is down"_s, u"Claude is back"_s}));
    session_->stop(Part::notifications);
    session_->start(Part::notifications);
    QTRY_COMPARE(session_->notifications()->questions(), 1);
    QVERIFY(wakes());
    QCOMPARE(titles(), QStringList());
    QCOMPARE(posts(), 2);
}

void SessionRestartTest::aSilentNotificationServerDelaysNoAlert()
{
    constexpr int moreThanTwoSeconds = 6000; // with room for a busy machine; D-Bus itself waits for 25 seconds
    session_->stop(Part::notifications);
    session_->start(Part::notifications);
    session_->notifications()->fallSilent();
    internet_->clearRequests();
    goDown();
    QVERIFY(wakes());
    QElapsedTimer timer;
    timer.start();
    QTRY_COMPARE_WITH_TIMEOUT(posts(), 1, moreThanTwoSeconds);
    QTRY_COMPARE_WITH_TIMEOUT(titles(), QStringList{u"Claude is down"_s}, moreThanTwoSeconds);
    QVERIFY(timer.elapsed() < moreThanTwoSeconds);
    comeBack();
    QVERIFY(wakes());
    QTRY_COMPARE_WITH_TIMEOUT(posts(), 2, moreThanTwoSeconds);
    QTRY_COMPARE_WITH_TIMEOUT(titles().size(), 2, moreThanTwoSeconds);
}

void SessionRestartTest::theProgramHasSaidNothing()
{
    kelvo_->endInSilence();
}

} // namespace kelvo

QTEST_MAIN(kelvo::SessionRestartTest)
#include "tst_sessionrestart.moc"
