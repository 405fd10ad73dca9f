#include "KelvoProcess.h"

#include <QTest>

namespace kelvo {

using namespace Qt::StringLiterals;

/// A session without a message bus, tray or notification service.
class WithoutBusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theProgramChecksAndPostsToSlackWithoutABus();
};

void WithoutBusTest::theProgramChecksAndPostsToSlackWithoutABus()
{
    SimulatedInternet internet;
    internet.setComponent(StatusPage::Claude, u"claude.ai"_s, u"major_outage"_s);
    KelvoProcess kelvo(internet);
    kelvo.writeSettings("[General]\nhasOnboarded=true\n"
                        "armedChannel=slack\n"
                        "outageAlertsEnabled=true\n"
                        "slackWebhookURL=https://hooks.slack.com/services/T0/B0/secret\n");
    kelvo.setEnvironment(u"DBUS_SYSTEM_BUS_ADDRESS"_s, u"unix:path=/nonexistent/bus"_s);
    kelvo.setEnvironment(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent/bus"_s);
    kelvo.start();
    QTRY_COMPARE(internet.requestsTo(u"hooks.slack.com"_s).size(), 1);
    QCOMPARE(internet.requestsTo(u"hooks.slack.com"_s).constFirst().body,
             u"{\"text\":\"Claude is down. We’ll notify you when it’s back.\"}"_s.toUtf8());
    QVERIFY(kelvo.isRunning());
    kelvo.endInSilence();
}

} // namespace kelvo

QTEST_MAIN(kelvo::WithoutBusTest)
#include "tst_withoutbus.moc"
