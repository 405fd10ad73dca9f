#include "alerts/NotifierStore.h"
#include "simulator/SimulatedInternet.h"
#include "support/CountingNetwork.h"
#include "support/FakeLoginItem.h"
#include "support/FakeNotificationCenter.h"
#include "support/ManualClock.h"
#include "support/MemoryPreferences.h"
#include "support/Settles.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>
#include <QUuid>

#include <algorithm>
#include <array>
#include <cstddef>
#include <new>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString sent = u"Test sent"_s;
const QString notSent = u"Couldn’t send — check the details"_s;
const QString testText = u"Kelvo is set up. Claude is back. You can continue working."_s;

const QString slackHost = u"hooks.slack.com"_s;
const QByteArray slackPath = "/services/T0/B0/sEcReT";
const QString webhook = u"https://hooks.slack.com/services/T0/B0/sEcReT"_s;
const QString telegramHost = u"api.telegram.org"_s;
const QString token = u"110201543:AAHdqTcvCH1vGWJxfSeofSAs0K5PALDsaw"_s;

/// A notification center that answers when the test tells it to.
class HesitantNotificationCenter : public FakeNotificationCenter
{
public:
    QFuture<AuthorizationStatus> authorizationStatus() override
    {
        ++reads;
        permission = {};
        permission.start();
        return permission.future();
    }
    QFuture<void> requestAuthorization() override
    {
        ++requests;
        answer = {};
        answer.start();
        return answer.future();
    }

    QPromise<AuthorizationStatus> permission;
    QPromise<void> answer;
};

/// A notifier with its own settings and simulated internet.
struct World
{
    explicit World(HttpLimits limits = NotifierStore::limits)
        : session(CountingNetwork::network(internet, requestsBegun), limits)
    {
    }

    void arm(RemoteChannel channel)
    {
        settings.setSlackWebhookURL(webhook);
        settings.setTelegramBotToken(token);
        settings.setTelegramChatID(u"-1001234567890"_s);
        settings.setArmedChannel(channel);
    }
    /// The bodies of all posts so far.
    QList<QJsonObject> bodies() const
    {
        QList<QJsonObject> all;
        for (const auto &request : internet.requests()) {
            all.append(QJsonDocument::fromJson(request.body).object());
        }
        return all;
    }

    SimulatedInternet internet;
    int requestsBegun = 0;
    HttpSession session;
    MemoryPreferences defaults;
    FakeLoginItem loginItem;
    SettingsStore settings{defaults, loginItem};
    FakeNotificationCenter center;
    NotifierStore notifier{settings, center, session};
};

QStringList printed;

void keepPrinted(QtMsgType, const QMessageLogContext &, const QString &message)
{
    printed.append(message);
}

} // namespace

class NotifierStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsThePermissionAtTheStart();
    void refreshReadsThePermissionAgain();
    void thePermissionIsPublishedBeforeItChanges();
    void aStoreDestroyedBeforeTheAnswerIgnoresIt();
    void requestAuthorizationReadsThePermissionWhateverTheAnswer();
    void anUnavailableNotificationCenterIsNeverCalled_data();
    void anUnavailableNotificationCenterIsNeverCalled();
    void everyAlertIsOneLocalNotification_data();
    void everyAlertIsOneLocalNotification();
    void alertsArePostedWhateverThePermissionAndTheWatching();
    void everyIdentifierIsANewUuid();
    void channelsThatDoNotDeliverSendNothing_data();
    void channelsThatDoNotDeliverSendNothing();
    void slackAlertIsOnePost();
    void telegramAlertIsOnePost();
    void textsAreSentUnchanged_data();
    void textsAreSentUnchanged();
    void theChannelsSettingsAreReadWhenThePostStarts();
    void settingsChangedDuringAPostDoNotAffectIt();
    void twoAlertsAreIndependent();
    void aFailedAlertIsDroppedSilently_data();
    void aFailedAlertIsDroppedSilently();
    void anAlertOfADestroyedStoreIsDropped();
    void onlyA2xxStatusCountsAsSent_data();
    void onlyA2xxStatusCountsAsSent();
    void aBrokenTransferCountsAsNotSent_data();
    void aBrokenTransferCountsAsNotSent();
    void aSilentServerCountsAsNotSent();
    void postsTimeOutAfterAMinute();
    void theBodyOfTelegramsResponseIsIgnored();
    void anInvalidAddressGivesNoRequest_data();
    void anInvalidAddressGivesNoRequest();
    void theWebhookIsUsedAsTyped_data();
    void theWebhookIsUsedAsTyped();
    void unusableTelegramSettingsGiveNoRequest_data();
    void unusableTelegramSettingsGiveNoRequest();
    void aTestReportsThatItWasSent_data();
    void aTestReportsThatItWasSent();
    void aTestPostsNoLocalNotification();
    void aTestIgnoresTheArmedChannel();
    void aTestOfAChannelThatDoesNotDeliverFailsAtOnce_data();
    void aTestOfAChannelThatDoesNotDeliverFailsAtOnce();
    void aTestOfAChannelThatIsNotSetUpFailsWithoutARequest_data();
    void aTestOfAChannelThatIsNotSetUpFailsWithoutARequest();
    void theLastResultStaysUntilTheNextTestEnds();
    void aStoreDestroyedDuringATestIgnoresItsEnd();
    void theResultIsPublishedBeforeItChanges();
    void secretsAreNeverPrinted();
};

void NotifierStoreTest::readsThePermissionAtTheStart()
{
    MemoryPreferences defaults;
    FakeLoginItem loginItem;
    SettingsStore settings(defaults, loginItem);
    HttpSession session({}, NotifierStore::limits);
    HesitantNotificationCenter center;
    NotifierStore notifier(settings, center, session);
    QCOMPARE(notifier.authorizationStatus(), AuthorizationStatus::notDetermined);
    QCOMPARE(notifier.lastTestResult(), std::nullopt);
    QCOMPARE(center.reads, 1);
    QCOMPARE(center.requests, 0);
    center.permission.addResult(AuthorizationStatus::authorized);
    center.permission.finish();
    settle();
    QCOMPARE(notifier.authorizationStatus(), AuthorizationStatus::authorized);
}

void NotifierStoreTest::refreshReadsThePermissionAgain()
{
    World world;
    for (const auto status : {AuthorizationStatus::denied, AuthorizationStatus::authorized}) {
        world.center.status = status;
        world.notifier.refreshAuthorization();
        settle();
        QCOMPARE(world.notifier.authorizationStatus(), status);
    }
    QCOMPARE(world.center.reads, 3);
    QCOMPARE(world.center.requests, 0);
}

void NotifierStoreTest::thePermissionIsPublishedBeforeItChanges()
{
    World world;
    settle();
    QList<AuthorizationStatus> seen;
    const auto look = [&] { seen.append(world.notifier.authorizationStatus()); };
    connect(&world.notifier, &NotifierStore::objectWillChange, this, look);
    connect(&world.notifier, &NotifierStore::authorizationStatusChanged, this, look);
    world.center.status = AuthorizationStatus::authorized;
    world.notifier.refreshAuthorization();
    settle();
    QCOMPARE(seen, (QList{AuthorizationStatus::notDetermined, AuthorizationStatus::authorized}));
}

void NotifierStoreTest::aStoreDestroyedBeforeTheAnswerIgnoresIt()
{
    MemoryPreferences defaults;
    FakeLoginItem loginItem;
    SettingsStore settings(defaults, loginItem);
    HttpSession session({}, NotifierStore::limits);
    HesitantNotificationCenter center;
    auto notifier = std::make_unique<NotifierStore>(settings, center, session);
    notifier->requestAuthorization();
    notifier.reset();
    // The store is gone. AddressSanitizer would report a continuation that still uses it.
    center.permission.addResult(AuthorizationStatus::authorized);
    center.permission.finish();
    center.answer.finish();
    settle();
    QCOMPARE(center.reads, 1);
}

void NotifierStoreTest::requestAuthorizationReadsThePermissionWhateverTheAnswer()
{
    MemoryPreferences defaults;
    FakeLoginItem loginItem;
    SettingsStore settings(defaults, loginItem);
    HttpSession session({}, NotifierStore::limits);
    HesitantNotificationCenter center;
    NotifierStore notifier(settings, center, session);
    notifier.requestAuthorization();
    settle();
    QCOMPARE(center.requests, 1);
    QCOMPARE(center.reads, 1); // only the one at the start: the user has not answered yet
    center.answer.finish();
    settle();
    QCOMPARE(center.reads, 2);
    center.permission.addResult(AuthorizationStatus::denied);
    center.permission.finish();
    settle();
    QCOMPARE(notifier.authorizationStatus(), AuthorizationStatus::denied);
}

void NotifierStoreTest::anUnavailableNotificationCenterIsNeverCalled_data()
{
    QTest::addColumn<RemoteChannel>("channel");
    QTest::addColumn<int>("posts");
    QTest::newRow("this computer") << RemoteChannel::thisMac << 0;
    QTest::newRow("Slack") << RemoteChannel::slack << 1;
    QTest::newRow("Telegram") << RemoteChannel::telegram << 1;
}

void NotifierStoreTest::anUnavailableNotificationCenterIsNeverCalled()
{
    QFETCH(RemoteChannel, channel);
    QFETCH(int, posts);
    World world;
    FakeNotificationCenter center;
    center.serves = false;
    center.status = AuthorizationStatus::authorized;
    center.turnedOff = u"Settings"_s;
    NotifierStore notifier(world.settings, center, world.session);
    world.arm(channel);
    notifier.refreshAuthorization();
    const auto answered = notifier.requestAuthorization();
    QVERIFY(answered.isFinished() && !answered.isCanceled());
    QCOMPARE(notifier.notificationsTurnedOffIn().result(), QString());
    notifier.send(u"Claude is back"_s, u"You can continue working."_s);
    settle();
    QTRY_COMPARE(world.internet.requests().size(), posts);
    QCOMPARE(center.reads + center.requests + int(center.notifications.size()), 0);
    QCOMPARE(notifier.authorizationStatus(), AuthorizationStatus::notDetermined);
}

void NotifierStoreTest::everyAlertIsOneLocalNotification_data()
{
    QTest::addColumn<RemoteChannel>("channel");
    for (const auto channel : allRemoteChannels) {
        QTest::newRow(qPrintable(rawValue(channel))) << channel;
    }
}

void NotifierStoreTest::everyAlertIsOneLocalNotification()
{
    QFETCH(RemoteChannel, channel);
    World world;
    world.arm(channel);
    world.notifier.send(u"Claude is back"_s, u"You can continue working."_s);
    QCOMPARE(world.center.notifications.size(), std::size_t{1});
    QCOMPARE(world.center.notifications[0].title, u"Claude is back"_s);
    QCOMPARE(world.center.notifications[0].body, u"You can continue working."_s);
    settle();
    QCOMPARE(world.center.notifications.size(), std::size_t{1});
}

void NotifierStoreTest::alertsArePostedWhateverThePermissionAndTheWatching()
{
    World world;
    world.center.status = AuthorizationStatus::denied;
    world.notifier.refreshAuthorization();
    world.settings.setWatchOnThisMac(false);
    settle();
    const int reads = world.center.reads;
    world.notifier.send(u"a"_s, u"b"_s);
    QCOMPARE(world.center.notifications.size(), std::size_t{1});
    QCOMPARE(world.center.reads, reads);
}

void NotifierStoreTest::everyIdentifierIsANewUuid()
{
    World world;
    QSet<QUuid> identifiers;
    for (int i = 0; i < 100; ++i) {
        world.notifier.send(u"a"_s, u"b"_s);
        identifiers.insert(QUuid::fromString(world.center.notifications.back().identifier));
    }
    QVERIFY(!identifiers.contains(QUuid()));
    QCOMPARE(identifiers.size(), 100);
}

void NotifierStoreTest::channelsThatDoNotDeliverSendNothing_data()
{
    QTest::addColumn<RemoteChannel>("channel");
    for (const auto channel : {RemoteChannel::thisMac, RemoteChannel::email, RemoteChannel::whatsapp}) {
        QTest::newRow(qPrintable(rawValue(channel))) << channel;
    }
}

void NotifierStoreTest::channelsThatDoNotDeliverSendNothing()
{
    QFETCH(RemoteChannel, channel);
    World world;
    world.arm(channel);
    world.notifier.send(u"Claude is back"_s, u"You can continue working."_s);
    settle();
    QCOMPARE(world.requestsBegun, 0);
    QCOMPARE(world.center.notifications.size(), std::size_t{1});
    // A wrong request would have changed the count.
    world.settings.setArmedChannel(RemoteChannel::slack);
    world.notifier.send(u"a"_s, u"b"_s);
    settle();
    QCOMPARE(world.requestsBegun, 1);
}

void NotifierStoreTest::slackAlertIsOnePost()
{
    World world;
    world.arm(RemoteChannel::slack);
    world.notifier.send(u"Claude is back"_s, u"You can continue working."_s);
    QTRY_COMPARE(world.internet.requests().size(), 1);
    const auto request = world.internet.requests().first();
    QCOMPARE(request.method, "POST"_ba);
    QCOMPARE(request.scheme, u"https"_s);
    QCOMPARE(request.host, slackHost);
    QCOMPARE(request.path, slackPath);
    QCOMPARE(request.header("Content-Type"), "application/json"_ba);
    QCOMPARE(world.bodies().first(), (QJsonObject{{u"text"_s, u"Claude is back. You can continue working."_s}}));
    settle();
    QCOMPARE(world.requestsBegun, 1);
}

void NotifierStoreTest::telegramAlertIsOnePost()
{
    World world;
    world.arm(RemoteChannel::telegram);
    world.notifier.send(u"Claude is back"_s, u"You can continue working."_s);
    QTRY_COMPARE(world.internet.requests().size(), 1);
    const auto request = world.internet.requests().first();
    QCOMPARE(request.method, "POST"_ba);
    QCOMPARE(request.scheme, u"https"_s);
    QCOMPARE(request.host, telegramHost);
    QCOMPARE(request.path, "/bot" + token.toLatin1() + "/sendMessage");
    QCOMPARE(request.header("Content-Type"), "application/json"_ba);
    // The chat id of a group starts with a minus sign and is sent as a text.
    QCOMPARE(world.bodies().first(),
             (QJsonObject{{u"chat_id"_s, u"-1001234567890"_s},
                          {u"text"_s, u"Claude is back. You can continue working."_s}}));
    settle();
    QCOMPARE(world.requestsBegun, 1);
}

void NotifierStoreTest::textsAreSentUnchanged_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("body");
    QTest::newRow("curly apostrophe") << u"Claude is down"_s << u"We’ll notify you when it’s back."_s;
    QTest::newRow("quotes and backslashes") << u"\"a\\b\""_s << u"line\nbreak\ttab"_s;
    QTest::newRow("markup") << u"<b>&amp;</b>"_s << u"*bold* _it_ `code`"_s;
    QTest::newRow("beyond the first plane") << u"😀"_s << u"𝒳"_s;
    QTest::newRow("empty") << u""_s << u""_s;
}

void NotifierStoreTest::textsAreSentUnchanged()
{
    QFETCH(QString, title);
    QFETCH(QString, body);
    World world;
    for (const auto channel : {RemoteChannel::slack, RemoteChannel::telegram}) {
        world.internet.clearRequests();
        world.arm(channel);
        world.notifier.send(title, body);
        QTRY_COMPARE(world.internet.requests().size(), 1);
        QCOMPARE(world.bodies().first()[u"text"_s].toString(), title + u". "_s + body);
    }
}

void NotifierStoreTest::theChannelsSettingsAreReadWhenThePostStarts()
{
    World world;
    world.arm(RemoteChannel::slack);
    world.notifier.send(u"a"_s, u"b"_s);
    // The channel is fixed by the call; its settings are read when the post starts, on the next turn of the event loop.
    world.settings.setSlackWebhookURL(u"https://hooks.slack.com/services/new"_s);
    world.settings.setArmedChannel(RemoteChannel::telegram);
    world.notifier.send(u"c"_s, u"d"_s);
    world.settings.setTelegramChatID(u"7"_s);
    world.settings.setTelegramBotToken(u"1:new"_s);
    QTRY_COMPARE(world.internet.requests().size(), 2);
    QCOMPARE(world.internet.requestsTo(slackHost).value(0).path, "/services/new"_ba);
    QCOMPARE(world.internet.requestsTo(telegramHost).value(0).path, "/bot1:new/sendMessage"_ba);
    QVERIFY(world.bodies().contains(QJsonObject{{u"text"_s, u"a. b"_s}}));
    QVERIFY(world.bodies().contains(QJsonObject{{u"chat_id"_s, u"7"_s}, {u"text"_s, u"c. d"_s}}));
}

void NotifierStoreTest::settingsChangedDuringAPostDoNotAffectIt()
{
    World world;
    world.arm(RemoteChannel::slack);
    const auto test = world.notifier.sendTest(RemoteChannel::slack);
    connect(&world.internet, &SimulatedInternet::requestReceived, this, [&] {
        world.settings.setSlackWebhookURL(u""_s);
        world.settings.setArmedChannel(RemoteChannel::thisMac);
    });
    QTRY_VERIFY(test.isFinished());
    QCOMPARE(world.internet.requests().first().path, slackPath);
    QCOMPARE(world.notifier.lastTestResult(), sent);
    QCOMPARE(world.requestsBegun, 1);
}

void NotifierStoreTest::twoAlertsAreIndependent()
{
    World world;
    world.arm(RemoteChannel::slack);
    // The first post never gets a response, and the second does not wait for it.
    world.internet.respondInTurn(slackHost, slackPath, {SimulatedResponse::silence(), SimulatedResponse::html("ok")});
    world.notifier.send(u"Claude is back"_s, u"1"_s);
    world.notifier.send(u"Cursor is back"_s, u"2"_s);
    QCOMPARE(world.center.titles(), (QStringList{u"Claude is back"_s, u"Cursor is back"_s}));
    QVERIFY(world.center.notifications[0].identifier != world.center.notifications[1].identifier);
    QTRY_COMPARE(world.internet.requests().size(), 2);
    const auto bodies = world.bodies();
    QVERIFY(bodies.contains(QJsonObject{{u"text"_s, u"Claude is back. 1"_s}}));
    QVERIFY(bodies.contains(QJsonObject{{u"text"_s, u"Cursor is back. 2"_s}}));
}

void NotifierStoreTest::aFailedAlertIsDroppedSilently_data()
{
    QTest::addColumn<int>("status");
    QTest::newRow("refused") << 404;
    QTest::newRow("broken") << 0;
}

void NotifierStoreTest::aFailedAlertIsDroppedSilently()
{
    QFETCH(int, status);
    World world;
    world.arm(RemoteChannel::slack);
    world.internet.respond(slackHost, slackPath,
                           status ? SimulatedResponse::ofStatus(status) : SimulatedResponse::closeAtOnce());
    const QSignalSpy will(&world.notifier, &NotifierStore::objectWillChange);
    world.notifier.send(u"Claude is back"_s, u"You can continue working."_s);
    // The result of the test that follows shows that the first post has ended and that only the test has a result.
    world.settings.setTelegramChatID(u"1"_s);
    QTRY_VERIFY(world.internet.requestsTo(slackHost).size() >= 1);
    const auto test = world.notifier.sendTest(RemoteChannel::telegram);
    QTRY_VERIFY(test.isFinished());
    QCOMPARE(world.notifier.lastTestResult(), sent);
    QCOMPARE(will.count(), 1);
    QCOMPARE(world.requestsBegun, 2);
}

void NotifierStoreTest::anAlertOfADestroyedStoreIsDropped()
{
    World world;
    world.arm(RemoteChannel::slack);
    auto notifier = std::make_unique<NotifierStore>(world.settings, world.center, world.session);
    notifier->send(u"a"_s, u"b"_s);
    notifier.reset();
    settle();
    QCOMPARE(world.requestsBegun, 0);
}

void NotifierStoreTest::onlyA2xxStatusCountsAsSent_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("expected");
    for (const int status : {200, 201, 202, 204, 299}) {
        QTest::addRow("%d", status) << status << true;
    }
    for (const int status : {300, 304, 400, 401, 403, 404, 410, 429, 500, 502, 503, 599}) {
        QTest::addRow("%d", status) << status << false;
    }
}

void NotifierStoreTest::onlyA2xxStatusCountsAsSent()
{
    QFETCH(int, status);
    QFETCH(bool, expected);
    World world;
    world.internet.respond(slackHost, {}, SimulatedResponse::ofStatus(status));
    world.internet.respond(telegramHost, {}, SimulatedResponse::ofStatus(status));
    const auto slack = world.notifier.postSlack(u"t"_s, webhook);
    const auto telegram = world.notifier.postTelegram(u"t"_s, token, u"1"_s);
    QTRY_VERIFY(slack.isFinished() && telegram.isFinished());
    QCOMPARE(slack.result(), expected);
    QCOMPARE(telegram.result(), expected);
}

void NotifierStoreTest::aBrokenTransferCountsAsNotSent_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("no such host") << 0;
    QTest::newRow("closed at once") << 1;
    QTest::newRow("closed in mid answer") << 2;
    QTest::newRow("redirected in a circle") << 3;
}

void NotifierStoreTest::aBrokenTransferCountsAsNotSent()
{
    QFETCH(int, kind);
    World world;
    switch (kind) {
    case 0: world.internet.setUnreachable(slackHost); break;
    case 1: world.internet.respond(slackHost, {}, SimulatedResponse::closeAtOnce()); break;
    case 2: world.internet.respond(slackHost, {}, SimulatedResponse::truncated("ok ok ok")); break;
    default: world.internet.respond(slackHost, {}, SimulatedResponse::redirect(webhook.toLatin1()));
    }
    const auto slack = world.notifier.postSlack(u"t"_s, webhook);
    QTRY_VERIFY(slack.isFinished());
    QCOMPARE(slack.result(), false);
    QVERIFY(world.requestsBegun > 0);
}

void NotifierStoreTest::aSilentServerCountsAsNotSent()
{
    World world({.idleTimeout = 50ms});
    world.internet.respond(slackHost, {}, SimulatedResponse::silence());
    const auto slack = world.notifier.postSlack(u"t"_s, webhook);
    QTRY_VERIFY(slack.isFinished());
    QCOMPARE(slack.result(), false);
}

void NotifierStoreTest::postsTimeOutAfterAMinute()
{
    QCOMPARE(NotifierStore::limits.idleTimeout, 60s);
    QCOMPARE(NotifierStore::limits.totalDeadline, 60s);
}

void NotifierStoreTest::theBodyOfTelegramsResponseIsIgnored()
{
    World world;
    world.internet.respond(telegramHost, {}, SimulatedResponse::json(R"({"ok":false,"description":"no"})"));
    const auto post = world.notifier.postTelegram(u"t"_s, token, u"1"_s);
    QTRY_VERIFY(post.isFinished());
    QCOMPARE(post.result(), true);
}

void NotifierStoreTest::anInvalidAddressGivesNoRequest_data()
{
    QTest::addColumn<QString>("address");
    for (const auto &address :
         {u""_s, u" "_s, u"   "_s, u"\t\n"_s, u"hello"_s, u"hello world"_s, u"hooks.slack.com/services/x"_s,
          u"https://"_s, u"https:///services/x"_s, u"https://hooks slack.com/x"_s, u"ftp://hooks.slack.com/x"_s,
          u"file:///etc/hostname"_s, u"data:text/plain,x"_s, u"mailto:a@b.example"_s, u"http://[::1"_s,
          u"https://hooks.slack.com:99999/x"_s, u"https://hooks.slack.com/a b"_s, u"https://hooks.slack.com/%zz"_s}) {
        QTest::newRow(QUrl::toPercentEncoding(address, " :/%[]").prepend('"').append('"').constData()) << address;
    }
}

void NotifierStoreTest::anInvalidAddressGivesNoRequest()
{
    QFETCH(QString, address);
    World world;
    const auto slack = world.notifier.postSlack(u"t"_s, address);
    QVERIFY(slack.isFinished());
    QCOMPARE(slack.result(), false);
    QCOMPARE(world.requestsBegun, 0);
    world.settings.setSlackWebhookURL(address);
    QVERIFY(world.notifier.sendTest(RemoteChannel::slack).isFinished());
    QCOMPARE(world.notifier.lastTestResult(), notSent);
}

void NotifierStoreTest::theWebhookIsUsedAsTyped_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("host");
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("not Slack’s host") << u"https://chat.example/hook?key=a%2Fb&x=1"_s << u"chat.example"_s
                                      << "/hook?key=a%2Fb&x=1"_ba;
    QTest::newRow("without TLS") << u"http://chat.example/hook"_s << u"chat.example"_s << "/hook"_ba;
    QTest::newRow("without a path") << u"https://chat.example"_s << u"chat.example"_s << "/"_ba;
}

void NotifierStoreTest::theWebhookIsUsedAsTyped()
{
    QFETCH(QString, address);
    QFETCH(QString, host);
    QFETCH(QByteArray, path);
    World world;
    world.internet.respond(host, {}, SimulatedResponse::ofStatus(200));
    const auto slack = world.notifier.postSlack(u"t"_s, address);
    QTRY_VERIFY(slack.isFinished());
    QCOMPARE(slack.result(), true);
    QCOMPARE(world.internet.requests().first().host, host);
    QCOMPARE(world.internet.requests().first().path, path);
}

void NotifierStoreTest::unusableTelegramSettingsGiveNoRequest_data()
{
    QTest::addColumn<QString>("botToken");
    QTest::addColumn<QString>("chatID");
    QTest::newRow("nothing") << u""_s << u""_s;
    QTest::newRow("no token") << u""_s << u"1"_s;
    QTest::newRow("no chat id") << token << u""_s;
    QTest::newRow("blank within the token") << u"12 34:abc"_s << u"1"_s;
    QTest::newRow("token of blanks") << u"  "_s << u"1"_s;
    QTest::newRow("token with a line break") << token + u'\n' << u"1"_s;
}

void NotifierStoreTest::unusableTelegramSettingsGiveNoRequest()
{
    QFETCH(QString, botToken);
    QFETCH(QString, chatID);
    World world;
    const auto post = world.notifier.postTelegram(u"t"_s, botToken, chatID);
    QVERIFY(post.isFinished());
    QCOMPARE(post.result(), false);
    QCOMPARE(world.requestsBegun, 0);
}

void NotifierStoreTest::aTestReportsThatItWasSent_data()
{
    QTest::addColumn<RemoteChannel>("channel");
    QTest::addColumn<QJsonObject>("body");
    QTest::newRow("Slack") << RemoteChannel::slack << QJsonObject{{u"text"_s, testText}};
    QTest::newRow("Telegram") << RemoteChannel::telegram
                              << QJsonObject{{u"chat_id"_s, u"-1001234567890"_s}, {u"text"_s, testText}};
}

void NotifierStoreTest::aTestReportsThatItWasSent()
{
    QFETCH(RemoteChannel, channel);
    QFETCH(QJsonObject, body);
    World world;
    world.arm(RemoteChannel::thisMac);
    auto test = world.notifier.sendTest(channel);
    QTRY_VERIFY(test.isFinished());
    QCOMPARE(world.notifier.lastTestResult(), sent);
    QCOMPARE(world.bodies(), QList{body});
    world.internet.respond(slackHost, {}, SimulatedResponse::ofStatus(404));
    world.internet.respond(telegramHost, {}, SimulatedResponse::ofStatus(404));
    test = world.notifier.sendTest(channel);
    QTRY_VERIFY(test.isFinished());
    QCOMPARE(world.notifier.lastTestResult(), notSent);
}

void NotifierStoreTest::aTestPostsNoLocalNotification()
{
    World world;
    world.arm(RemoteChannel::slack);
    const auto test = world.notifier.sendTest(RemoteChannel::slack);
    QTRY_VERIFY(test.isFinished());
    QCOMPARE(world.center.notifications.size(), std::size_t{0});
}

void NotifierStoreTest::aTestIgnoresTheArmedChannel()
{
    World world;
    world.arm(RemoteChannel::telegram);
    const auto test = world.notifier.sendTest(RemoteChannel::slack);
    QTRY_VERIFY(test.isFinished());
    QCOMPARE(world.internet.requestsTo(slackHost).size(), 1);
    QCOMPARE(world.internet.requestsTo(telegramHost).size(), 0);
}

void NotifierStoreTest::aTestOfAChannelThatDoesNotDeliverFailsAtOnce_data()
{
    channelsThatDoNotDeliverSendNothing_data();
}

void NotifierStoreTest::aTestOfAChannelThatDoesNotDeliverFailsAtOnce()
{
    QFETCH(RemoteChannel, channel);
    World world;
    world.arm(channel);
    world.notifier.sendTest(channel);
    QCOMPARE(world.notifier.lastTestResult(), notSent);
    settle();
    QCOMPARE(world.requestsBegun, 0);
}

void NotifierStoreTest::aTestOfAChannelThatIsNotSetUpFailsWithoutARequest_data()
{
    QTest::addColumn<RemoteChannel>("channel");
    QTest::newRow("Slack without a webhook") << RemoteChannel::slack;
    QTest::newRow("Telegram without a chat id") << RemoteChannel::telegram;
}

void NotifierStoreTest::aTestOfAChannelThatIsNotSetUpFailsWithoutARequest()
{
    QFETCH(RemoteChannel, channel);
    World world;
    world.settings.setTelegramBotToken(token);
    QVERIFY(world.notifier.sendTest(channel).isFinished());
    QCOMPARE(world.notifier.lastTestResult(), notSent);
    settle();
    QCOMPARE(world.requestsBegun, 0);
}

void NotifierStoreTest::theLastResultStaysUntilTheNextTestEnds()
{
    World world;
    world.arm(RemoteChannel::slack);
    world.notifier.sendTest(RemoteChannel::email);
    QCOMPARE(world.notifier.lastTestResult(), notSent);
    std::optional<QString> underWay;
    connect(&world.internet, &SimulatedInternet::requestReceived, this,
            [&] { underWay = world.notifier.lastTestResult(); });
    const auto test = world.notifier.sendTest(RemoteChannel::slack);
    QTRY_VERIFY(test.isFinished());
    QCOMPARE(underWay, notSent);
    QCOMPARE(world.notifier.lastTestResult(), sent);
}

void NotifierStoreTest::aStoreDestroyedDuringATestIgnoresItsEnd()
{
    World world;
    world.arm(RemoteChannel::slack);
    // What uses the destroyed store meets overwritten memory.
    alignas(NotifierStore) std::array<std::byte, sizeof(NotifierStore)> memory;
    auto *notifier = new (memory.data()) NotifierStore(world.settings, world.center, world.session);
    const auto test = notifier->sendTest(RemoteChannel::slack);
    QVERIFY(!test.isFinished());
    notifier->~NotifierStore();
    memory.fill(std::byte{0x5a});
    QVERIFY(settles(test));
    QCOMPARE(world.bodies().size(), 1);
    QVERIFY(std::ranges::all_of(memory, [](std::byte byte) { return byte == std::byte{0x5a}; }));
}

void NotifierStoreTest::theResultIsPublishedBeforeItChanges()
{
    World world;
    settle();
    QStringList seen;
    const auto look = [&] { seen.append(world.notifier.lastTestResult().value_or(u"none"_s)); };
    connect(&world.notifier, &NotifierStore::objectWillChange, this, look);
    connect(&world.notifier, &NotifierStore::lastTestResultChanged, this, look);
    world.notifier.sendTest(RemoteChannel::whatsapp);
    QCOMPARE(seen, (QStringList{u"none"_s, notSent}));
}

void NotifierStoreTest::secretsAreNeverPrinted()
{
    World world;
    world.arm(RemoteChannel::telegram);
    printed.clear();
    const auto handler = qInstallMessageHandler(keepPrinted);
    const auto restore = qScopeGuard([handler] { qInstallMessageHandler(handler); });
    qWarning("this is kept");
    for (const auto &response : {SimulatedResponse::ofStatus(200), SimulatedResponse::ofStatus(401),
                                 SimulatedResponse::closeAtOnce(), SimulatedResponse::truncated("abcdef")}) {
        world.internet.respond(slackHost, {}, response);
        world.internet.respond(telegramHost, {}, response);
        const auto slack = world.notifier.sendTest(RemoteChannel::slack);
        const auto telegram = world.notifier.sendTest(RemoteChannel::telegram);
        QTRY_VERIFY(slack.isFinished() && telegram.isFinished());
    }
    const auto broken = world.notifier.postTelegram(u"t"_s, token + u" x"_s, u"1"_s);
    QVERIFY(broken.isFinished());
    QVERIFY(printed.contains(u"this is kept"_s));
    const QString all = printed.join(u'\n');
    QVERIFY2(!all.contains(token) && !all.contains(u"sEcReT"_s) && !all.contains(u"1001234567890"_s), qPrintable(all));
}

QTEST_GUILESS_MAIN(NotifierStoreTest)
#include "tst_notifierstore.moc"
