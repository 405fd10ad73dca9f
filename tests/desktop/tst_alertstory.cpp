#include "DesktopWindow.h"
#include "Hand.h"
#include "KelvoProcess.h"
#include "Screen.h"

#include "support/FakeLogind.h"
#include "support/PrivateBus.h"

#include <QProcess>
#include <QTest>

namespace kelvo {

using namespace Qt::StringLiterals;

/// The main function of the program from end to end: it fetches the vendors' documents over HTTPS, shows the ring in a
/// real tray, and sends one alert to a real notification service, to Slack and to Telegram.
class AlertStoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void anOutageEndsInOneNotificationAndOneSlackPost();
    void theActionOfANotificationOpensThePopover();
    void anAlertIsPostedToTelegram();
    void nothingIsCheckedDuringSleepAndWakingUpChecksAtOnce();

private:
    void goDown();
    void comeBackAsThePageSays();
    void answerAgain();
    /// Makes the program check at once, so that the test need not wait for the next round.
    void sleepAndWake();
    QList<SimulatedRequest> pageRequests() const;

    std::unique_ptr<SimulatedInternet> internet_;
    std::unique_ptr<PrivateBus> systemBus_;
    std::unique_ptr<FakeLogind> logind_;
    std::unique_ptr<KelvoProcess> kelvo_;
    std::unique_ptr<QProcess> monitor_;
    QByteArray heard_;
};

void AlertStoryTest::init()
{
    internet_ = std::make_unique<SimulatedInternet>();
    systemBus_ = std::make_unique<PrivateBus>();
    systemBus_->start();
    logind_ = std::make_unique<FakeLogind>(*systemBus_);
    kelvo_ = std::make_unique<KelvoProcess>(*internet_);
    kelvo_->setEnvironment(u"DBUS_SYSTEM_BUS_ADDRESS"_s, systemBus_->address());

    heard_.clear();
    monitor_ = std::make_unique<QProcess>();
    connect(monitor_.get(), &QProcess::readyReadStandardOutput, this, [this] { heard_ += monitor_->readAll(); });
    monitor_->start(u"dbus-monitor"_s,
                    {u"--session"_s, u"interface='org.freedesktop.Notifications',member='Notify'"_s});
    QTRY_VERIFY(!heard_.isEmpty());
    heard_.clear();
}

void AlertStoryTest::cleanup()
{
    kelvo_.reset();
    monitor_->kill();
    monitor_->waitForFinished();
    logind_.reset();
    systemBus_.reset();
    internet_.reset();
}

void AlertStoryTest::goDown()
{
    internet_->setComponent(StatusPage::Claude, u"claude.ai"_s, u"major_outage"_s);
    internet_->setProbe(u"claude.ai"_s, 503);
}

void AlertStoryTest::comeBackAsThePageSays()
{
    internet_->setAllOperational(StatusPage::Claude);
}

void AlertStoryTest::answerAgain()
{
    internet_->setProbe(u"claude.ai"_s, 200);
}

void AlertStoryTest::sleepAndWake()
{
    logind_->prepareForSleep(true);
    logind_->prepareForSleep(false);
}

QList<SimulatedRequest> AlertStoryTest::pageRequests() const
{
    return internet_->requestsTo(u"status.claude.com"_s);
}

void AlertStoryTest::anOutageEndsInOneNotificationAndOneSlackPost()
{
    kelvo_->writeSettings("[General]\nhasOnboarded=true\n"
                          "enabledServices=claude, cursor, gemini\n"
                          "armedChannel=slack\n"
                          "slackWebhookURL=https://hooks.slack.com/services/T0/B0/secret\n");
    goDown();
    kelvo_->start();
    QTRY_VERIFY(Screen::findRing(RingState::outage));
    QVERIFY(heard_.isEmpty());

    const auto request = pageRequests().value(0);
    QCOMPARE(request.scheme, u"https"_s);
    QCOMPARE(request.header("User-Agent"), "Kelvo/1.0 (macOS status watcher)"_ba);

    comeBackAsThePageSays();
    sleepAndWake();
    QTRY_VERIFY(Screen::findRing(RingState::recovering));
    QVERIFY(heard_.isEmpty());

    answerAgain();
    sleepAndWake();
    QTRY_VERIFY(Screen::findRing(RingState::available));
    QTRY_COMPARE(internet_->requestsTo(u"hooks.slack.com"_s).size(), 1);
    const auto post = internet_->requestsTo(u"hooks.slack.com"_s).constFirst();
    QCOMPARE(post.path, "/services/T0/B0/secret"_ba);
    QCOMPARE(post.body, R"({"text":"Claude is back. You can continue working."})"_ba);

    QTRY_VERIFY(heard_.contains("\"Claude is back\""));
    QVERIFY(heard_.contains("string \"Kelvo\""));
    QVERIFY(heard_.contains("\"You can continue working.\""));
    const auto words = heard_.simplified();
    QVERIFY(words.contains("string \"suppress-sound\" variant boolean true"));
    QVERIFY(words.contains("string \"desktop-entry\" variant string \"app.kelvo.Kelvo\""));
    QVERIFY(words.contains("string \"urgency\" variant byte 1"));

    // Two more rounds with an operational service do not repeat the alert.
    for (int round = 0; round < 2; ++round) {
        const auto before = pageRequests().size();
        sleepAndWake();
        QTRY_VERIFY(pageRequests().size() > before);
    }
    QVERIFY(Screen::findRing(RingState::available));
    QCOMPARE(heard_.count("member=Notify"), 1);
    QCOMPARE(internet_->requestsTo(u"hooks.slack.com"_s).size(), 1);
    kelvo_->endInSilence();
}

// The notification service of Xfce shows the default action as a button at the bottom right.
void AlertStoryTest::theActionOfANotificationOpensThePopover()
{
    const auto notification = [] { return DesktopWindow::titled(u"xfce4-notifyd"_s); };
    QTRY_VERIFY(!notification()); // those of other tests disappear after ten seconds
    kelvo_->writeSettings("[General]\nhasOnboarded=true\noutageAlertsEnabled=true\n");
    goDown();
    kelvo_->start();
    QTRY_VERIFY(heard_.contains("\"Claude is down\""));
    QTRY_VERIFY(notification());
    QVERIFY(!DesktopWindow::titled(u"Kelvo"_s));
    Hand::click(notification()->geometry.bottomRight() - QPoint(40, 30));
    QTRY_VERIFY(DesktopWindow::titled(u"Kelvo"_s));
    QTRY_COMPARE(DesktopWindow::activeTitle(), u"Kelvo"_s);
    kelvo_->endInSilence();
}

void AlertStoryTest::anAlertIsPostedToTelegram()
{
    kelvo_->writeSettings("[General]\nhasOnboarded=true\n"
                          "armedChannel=telegram\n"
                          "telegramBotToken=123:abc\n"
                          "telegramChatID=-100200\n");
    goDown();
    kelvo_->start();
    QTRY_VERIFY(Screen::findRing(RingState::outage));
    comeBackAsThePageSays();
    answerAgain();
    sleepAndWake();
    QTRY_COMPARE(internet_->requestsTo(u"api.telegram.org"_s).size(), 1);
    const auto post = internet_->requestsTo(u"api.telegram.org"_s).constFirst();
    QCOMPARE(post.path, "/bot123:abc/sendMessage"_ba);
    QCOMPARE(post.body, R"({"chat_id":"-100200","text":"Claude is back. You can continue working."})"_ba);
    QTRY_VERIFY(heard_.contains("\"Claude is back\""));
}

void AlertStoryTest::nothingIsCheckedDuringSleepAndWakingUpChecksAtOnce()
{
    kelvo_->start();
    QTRY_VERIFY(Screen::findRing(RingState::available));
    QCOMPARE(pageRequests().size(), 1);
    logind_->prepareForSleep(true);
    logind_->prepareForSleep(false);
    QTRY_COMPARE(pageRequests().size(), 2);
}

} // namespace kelvo

QTEST_MAIN(kelvo::AlertStoryTest)
#include "tst_alertstory.moc"
