#include "platform/linux/DBusNotificationCenter.h"
#include "support/FakeNotificationServer.h"

#include <QDBusArgument>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const QStringList plain{u"body"_s};
const QStringList markup{u"body"_s, u"body-markup"_s};
const QStringList clickable{u"actions"_s, u"body"_s};
const LocalNotification claude{u"1"_s, u"Claude is back"_s, u"You can continue working."_s};
const LocalNotification odd{u"2"_s, u"<A> & B"_s, u"a < b & c > \"d\""_s};

/// An icon whose upper half has one colour and whose lower half has a translucent one.
QImage twoColoured()
{
    QImage image(64, 64, QImage::Format_ARGB32);
    image.fill(qRgba(0xff, 0x80, 0x00, 0xff));
    for (int y = 32; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) {
            image.setPixel(x, y, qRgba(0x10, 0x20, 0x30, 0x80));
        }
    }
    return image;
}

} // namespace

class DBusNotificationCenterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void postsASilentNotificationUnderItsOwnName();
    void namesItsIconWhenItIsInstalled();
    void sendsItsIconAsImageDataWhenItIsNotInstalled();
    void namesNoIconWhenNoneIsAvailable();
    void escapesTheBodyForAServerThatReadsMarkup();
    void sendsThePlainBodyToAServerThatReadsNoMarkup();
    void offersTheDefaultActionToAServerThatReadsActions();
    void aClickActivatesTheProgramWithItsToken();
    void otherClicksDoNotActivateTheProgram();
    void aClickOnWhatAFormerServerShowedDoesNothing();
    void aSilentServerIsNotWaitedFor();
    void asksAServerOnceForItsCapabilities();
    void asksTheServerThatReplacesAnother();
    void usesAServerThatStartsLater();
    void startsAServerThatTheBusCanStart();
    void forgetsTheCapabilitiesOfAServerThatLeft();
    void keepsAnAlertForTheNextServer();
    void keepsTheOrderOfAlertsForTheNextServer();
    void keepsAnAlertThatCouldNotStartAServer();
    void dropsAnAlertForWhichNoServerStartsInTime();
    void isUnavailableWithoutABus();
    void isAvailableAgainWhenTheBusIsBack();
    void keepsAlertsWhenTheBusIsLost();
    void isAuthorizedByARunningServer();
    void isAuthorizedByAServerThatCanBeStarted();
    void isNotDeterminedWithoutAServer();
    void isNotDeterminedWithoutABus();
    void doesNotAskTheUserForPermission();

private:
    std::unique_ptr<DBusNotificationCenter> center() const
    {
        return std::make_unique<DBusNotificationCenter>(std::make_shared<BusConnection>(daemon_->address()));
    }
    void addStartableServer(const QString &started) const;
    static AuthorizationStatus status(DBusNotificationCenter &center);

    std::unique_ptr<QTemporaryDir> data_;
    std::unique_ptr<PrivateBus> daemon_;
};

void DBusNotificationCenterTest::init()
{
    // Kelvo may be installed on this machine.
    data_ = std::make_unique<QTemporaryDir>();
    qputenv("XDG_DATA_HOME", data_->path().toUtf8());
    qputenv("XDG_DATA_DIRS", data_->path().toUtf8());
    QGuiApplication::setWindowIcon({});
    daemon_ = std::make_unique<PrivateBus>();
}

void DBusNotificationCenterTest::cleanup()
{
    daemon_.reset();
}

// The program that the bus starts only creates a file. The call waits until the test itself claims the name.
void DBusNotificationCenterTest::addStartableServer(const QString &started) const
{
    daemon_->addActivatable(u"org.freedesktop.Notifications"_s, u"/bin/sh -c 'touch %1; sleep 10'"_s.arg(started));
}

AuthorizationStatus DBusNotificationCenterTest::status(DBusNotificationCenter &center)
{
    const auto future = center.authorizationStatus();
    // No server can cause `denied`, so it stands for a call that was never answered.
    return QTest::qWaitFor([&] { return future.isFinished(); }) ? future.result() : AuthorizationStatus::denied;
}

void DBusNotificationCenterTest::postsASilentNotificationUnderItsOwnName()
{
    daemon_->start();
    const FakeNotificationServer server(*daemon_, plain);
    const auto center = this->center();
    QVERIFY(center->canServeThisProcess());

    center->add(claude);
    QTRY_COMPARE(server.notifications().size(), 1);
    const auto &shown = server.notifications().first();
    QCOMPARE(shown.applicationName, u"Kelvo"_s);
    QCOMPARE(shown.replacesId, 0U);
    QCOMPARE(shown.summary, u"Claude is back"_s);
    QCOMPARE(shown.body, u"You can continue working."_s);
    QCOMPARE(shown.actions, QStringList());
    QCOMPARE(shown.expireTimeout, -1);
    QCOMPARE(shown.hints.size(), 3);
    QCOMPARE(shown.hints.value(u"suppress-sound"_s), QVariant(true));
    QCOMPARE(shown.hints.value(u"desktop-entry"_s), QVariant(u"app.kelvo.Kelvo"_s));
    QCOMPARE(shown.hints.value(u"urgency"_s), QVariant::fromValue<uchar>(1));
}

void DBusNotificationCenterTest::namesItsIconWhenItIsInstalled()
{
    const QDir icons(data_->filePath(u"icons/hicolor/scalable/apps"_s));
    QVERIFY(icons.mkpath(u"."_s));
    QFile icon(icons.filePath(u"app.kelvo.Kelvo.svg"_s));
    QVERIFY(icon.open(QIODevice::WriteOnly));
    QGuiApplication::setWindowIcon(QIcon(QPixmap::fromImage(twoColoured())));

    daemon_->start();
    const FakeNotificationServer server(*daemon_, plain);
    const auto center = this->center();
    center->add(claude);
    QTRY_COMPARE(server.notifications().size(), 1);
    QCOMPARE(server.notifications().first().applicationIcon, u"app.kelvo.Kelvo"_s);
    QVERIFY(!server.notifications().first().hints.contains(u"image-data"_s));
}

void DBusNotificationCenterTest::sendsItsIconAsImageDataWhenItIsNotInstalled()
{
    // Larger than what is sent.
    QGuiApplication::setWindowIcon(QIcon(QPixmap::fromImage(twoColoured().scaled(128, 128))));
    daemon_->start();
    const FakeNotificationServer server(*daemon_, plain);
    const auto center = this->center();
    center->add(claude);
    QTRY_COMPARE(server.notifications().size(), 1);
    QCOMPARE(server.notifications().first().applicationIcon, QString());
    const auto picture = server.notifications().first().hints.value(u"image-data"_s).value<QDBusArgument>();
    QCOMPARE(picture.currentSignature(), u"(iiibiiay)"_s);

    int width = 0;
    int height = 0;
    int rowstride = 0;
    bool hasAlpha = false;
    int bits = 0;
    int channels = 0;
    QByteArray data;
    picture.beginStructure();
    picture >> width >> height >> rowstride >> hasAlpha >> bits >> channels >> data;
    picture.endStructure();
    QCOMPARE(width, 64);
    QCOMPARE(height, 64);
    QCOMPARE(rowstride, 64 * 4);
    QVERIFY(hasAlpha);
    QCOMPARE(bits, 8);
    QCOMPARE(channels, 4);
    QCOMPARE(data.size(), 64 * 64 * 4);
    QCOMPARE(data.first(4), QByteArray("\xff\x80\x00\xff", 4)); // red first, not premultiplied
    QCOMPARE(data.last(4), QByteArray("\x10\x20\x30\x80", 4));
}

void DBusNotificationCenterTest::namesNoIconWhenNoneIsAvailable()
{
    daemon_->start();
    const FakeNotificationServer server(*daemon_, plain);
    const auto center = this->center();
    center->add(claude);
    QTRY_COMPARE(server.notifications().size(), 1);
    QCOMPARE(server.notifications().first().applicationIcon, QString());
    QVERIFY(!server.notifications().first().hints.contains(u"image-data"_s));
}

void DBusNotificationCenterTest::escapesTheBodyForAServerThatReadsMarkup()
{
    daemon_->start();
    const FakeNotificationServer server(*daemon_, markup);
    const auto center = this->center();
    center->add(odd);
    QTRY_COMPARE(server.notifications().size(), 1);
    QCOMPARE(server.notifications().first().summary, odd.title);
    QCOMPARE(server.notifications().first().body, u"a &lt; b &amp; c &gt; \"d\""_s);
}

void DBusNotificationCenterTest::sendsThePlainBodyToAServerThatReadsNoMarkup()
{
    daemon_->start();
    const FakeNotificationServer server(*daemon_, plain);
    const auto center = this->center();
    center->add(odd);
    QTRY_COMPARE(server.notifications().size(), 1);
    QCOMPARE(server.notifications().first().body, odd.body);
}

void DBusNotificationCenterTest::offersTheDefaultActionToAServerThatReadsActions()
{
    daemon_->start();
    const FakeNotificationServer server(*daemon_, clickable);
    const auto center = this->center();
    center->add(claude);
    QTRY_COMPARE(server.notifications().size(), 1);
    QCOMPARE(server.notifications().first().actions, (QStringList{u"default"_s, u"Open Kelvo"_s}));
}

void DBusNotificationCenterTest::aClickActivatesTheProgramWithItsToken()
{
    daemon_->start();
    FakeNotificationServer server(*daemon_, clickable);
    const auto center = this->center();
    QByteArray token;
    connect(center.get(), &NotificationCenter::activated, this, [&token] { token = qgetenv("XDG_ACTIVATION_TOKEN"); });
    QSignalSpy activated(center.get(), &NotificationCenter::activated);
    center->add(claude);
    center->add(odd);
    QTRY_COMPARE(server.notifications().size(), 2);
    // The answer to Notify arrives after the call, so the click is repeated until it is understood.
    QTRY_VERIFY((server.click(2, u"token-of-the-click"_s), !activated.isEmpty()));
    QCOMPARE(token, "token-of-the-click"_ba);
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

void DBusNotificationCenterTest::otherClicksDoNotActivateTheProgram()
{
    daemon_->start();
    FakeNotificationServer server(*daemon_, clickable);
    const auto center = this->center();
    QByteArrayList tokens;
    connect(center.get(), &NotificationCenter::activated, this,
            [&tokens] { tokens << qgetenv("XDG_ACTIVATION_TOKEN"); });
    center->add(claude);
    center->add(odd);
    QTRY_COMPARE(server.notifications().size(), 2);
    QTRY_VERIFY((server.click(1, u"first"_s), tokens.contains("first")));
    QTRY_VERIFY((server.click(2, u"second"_s), tokens.contains("second")));
    server.click(1, u"third"_s);
    QTRY_VERIFY(tokens.contains("third"));
    tokens.clear();

    server.click(77, u"of another program"_s);
    server.click(2, u"third"_s, u"another action"_s);
    server.close(2);
    server.click(2, u"of a closed notification"_s);
    Q_EMIT server.ActionInvoked(1, u"default"_s);
    // Signals arrive in the order in which they were sent, so this is the only one that counts.
    QTRY_VERIFY(!tokens.isEmpty());
    QCOMPARE(tokens, QByteArrayList{"third"});
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

// Each server counts its notifications from the start.
void DBusNotificationCenterTest::aClickOnWhatAFormerServerShowedDoesNothing()
{
    daemon_->start();
    auto server = std::make_unique<FakeNotificationServer>(*daemon_, clickable);
    const auto center = this->center();
    QByteArrayList tokens;
    connect(center.get(), &NotificationCenter::activated, this,
            [&tokens] { tokens << qgetenv("XDG_ACTIVATION_TOKEN"); });
    center->add(claude);
    QTRY_VERIFY((server->click(1, u"former"_s), tokens.contains("former")));

    server.reset();
    server = std::make_unique<FakeNotificationServer>(*daemon_, clickable);
    QTRY_COMPARE(server->questions(), 1);
    tokens.clear();
    server->click(1, u"of another program"_s);
    center->add(claude);
    QTRY_VERIFY((server->click(1, u"new"_s), !tokens.isEmpty()));
    QCOMPARE(tokens, QByteArrayList{"new"});
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

void DBusNotificationCenterTest::aSilentServerIsNotWaitedFor()
{
    QVERIFY(DBusNotificationCenter::answerTimeout <= std::chrono::seconds(2));
    daemon_->start();
    FakeNotificationServer server(*daemon_, markup);
    server.fallSilent();
    DBusNotificationCenter center(std::make_shared<BusConnection>(daemon_->address()), {},
                                  std::chrono::milliseconds(50));
    center.add(odd);
    QTRY_COMPARE(server.notifications().size(), 1);
    QCOMPARE(server.notifications().first().body, odd.body);
    QCOMPARE(server.notifications().first().actions, QStringList());
}

void DBusNotificationCenterTest::asksAServerOnceForItsCapabilities()
{
    daemon_->start();
    const FakeNotificationServer server(*daemon_, plain);
    const auto center = this->center();
    QTRY_COMPARE(server.questions(), 1);
    center->add(claude);
    center->add(odd);
    QTRY_COMPARE(server.notifications().size(), 2);
    QCOMPARE(server.questions(), 1);
}

void DBusNotificationCenterTest::asksTheServerThatReplacesAnother()
{
    daemon_->start();
    auto first = std::make_unique<FakeNotificationServer>(*daemon_, plain);
    const auto center = this->center();
    center->add(odd);
    QTRY_COMPARE(first->notifications().size(), 1);

    first.reset();
    const FakeNotificationServer second(*daemon_, markup);
    QTRY_COMPARE(second.questions(), 1);
    center->add(odd);
    QTRY_COMPARE(second.notifications().size(), 1);
    QCOMPARE(second.notifications().first().body, u"a &lt; b &amp; c &gt; \"d\""_s);
}

void DBusNotificationCenterTest::usesAServerThatStartsLater()
{
    daemon_->start();
    const auto center = this->center();
    const FakeNotificationServer server(*daemon_, plain);
    QTRY_COMPARE(server.questions(), 1);
    center->add(claude);
    QTRY_COMPARE(server.notifications().size(), 1);
}

void DBusNotificationCenterTest::startsAServerThatTheBusCanStart()
{
    daemon_->start();
    const QTemporaryDir directory;
    const auto started = directory.filePath(u"started"_s);
    addStartableServer(started);
    const auto center = this->center();
    center->add(odd);
    QTRY_VERIFY(QFile::exists(started));
    const FakeNotificationServer server(*daemon_, markup);
    QTRY_COMPARE(server.notifications().size(), 1);
    QCOMPARE(server.notifications().first().body, u"a &lt; b &amp; c &gt; \"d\""_s);
}

void DBusNotificationCenterTest::forgetsTheCapabilitiesOfAServerThatLeft()
{
    daemon_->start();
    const QTemporaryDir directory;
    const auto started = directory.filePath(u"started"_s);
    addStartableServer(started);
    auto first = std::make_unique<FakeNotificationServer>(*daemon_, plain);
    const auto center = this->center();
    center->add(odd);
    QTRY_COMPARE(first->notifications().size(), 1);

    first.reset();
    QTRY_VERIFY(!center->authorizationStatus().isFinished()); // the server has left, so the bus must be asked again
    center->add(odd);
    QTRY_VERIFY(QFile::exists(started));
    const FakeNotificationServer second(*daemon_, markup);
    QTRY_COMPARE(second.notifications().size(), 1);
    QCOMPARE(second.notifications().first().body, u"a &lt; b &amp; c &gt; \"d\""_s);
}

// The first alerts were on their way when the server left, and come back after the last one was made.
void DBusNotificationCenterTest::keepsTheOrderOfAlertsForTheNextServer()
{
    daemon_->start();
    FakeNotificationServer first(*daemon_, plain);
    first.holdBack();
    const auto center = this->center();
    center->add(claude);
    center->add(odd);
    QTRY_COMPARE(first.heldBack(), 2);
    first.leave();
    QTRY_COMPARE(status(*center), AuthorizationStatus::notDetermined);
    center->add({u"3"_s, u"last"_s, u"of all"_s});
    first.refuse();
    // The program has heard what was sent before this.
    QCOMPARE(status(*center), AuthorizationStatus::notDetermined);

    const FakeNotificationServer second(*daemon_, plain);
    QTRY_COMPARE(second.notifications().size(), 3);
    QCOMPARE(second.notifications().at(0).summary, claude.title);
    QCOMPARE(second.notifications().at(1).summary, odd.title);
    QCOMPARE(second.notifications().at(2).summary, u"last"_s);
}

void DBusNotificationCenterTest::keepsAnAlertForTheNextServer()
{
    daemon_->start();
    auto first = std::make_unique<FakeNotificationServer>(*daemon_, plain);
    const auto center = this->center();
    QTRY_COMPARE(first->questions(), 1);
    first.reset();
    center->add(claude); // before and after the program has heard that the server is gone
    QTRY_COMPARE(status(*center), AuthorizationStatus::notDetermined);
    center->add(odd);
    QCOMPARE(status(*center), AuthorizationStatus::notDetermined); // the bus answers in order, so it has refused by now

    auto second = std::make_unique<FakeNotificationServer>(*daemon_, markup);
    QTRY_COMPARE(second->notifications().size(), 2);
    QCOMPARE(second->notifications().at(0).summary, claude.title);
    QCOMPARE(second->notifications().at(1).body, u"a &lt; b &amp; c &gt; \"d\""_s);

    // They are shown once.
    second.reset();
    const FakeNotificationServer third(*daemon_, plain);
    QTRY_COMPARE(third.questions(), 1);
    center->add(claude);
    QTRY_COMPARE(third.notifications().size(), 1);
}

void DBusNotificationCenterTest::keepsAnAlertThatCouldNotStartAServer()
{
    daemon_->start();
    const QTemporaryDir directory;
    const auto started = directory.filePath(u"started"_s);
    daemon_->addActivatable(u"org.freedesktop.Notifications"_s, u"/bin/sh -c 'echo >>%1; exit 1'"_s.arg(started));
    const auto center = this->center();
    center->add(claude);
    QTRY_COMPARE(QFileInfo(started).size(), 2); // one start for the question, one for the notification
    QCOMPARE(status(*center), AuthorizationStatus::authorized);
    const FakeNotificationServer server(*daemon_, plain);
    QTRY_COMPARE(server.notifications().size(), 1);
}

void DBusNotificationCenterTest::dropsAnAlertForWhichNoServerStartsInTime()
{
    daemon_->start();
    const auto center = std::make_unique<DBusNotificationCenter>(std::make_shared<BusConnection>(daemon_->address()),
                                                                 QStringList(), DBusNotificationCenter::answerTimeout,
                                                                 std::chrono::milliseconds(1));
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    center->add(claude);
    QCOMPARE(status(*center), AuthorizationStatus::notDetermined); // the bus answers in order, so it has refused by now

    const FakeNotificationServer server(*daemon_, plain);
    QTRY_COMPARE(server.questions(), 1);
    // One that is added before the answer arrives is dropped, too.
    QTRY_VERIFY((center->add(odd), !server.notifications().isEmpty()));
    for (const auto &shown : server.notifications()) {
        QCOMPARE(shown.summary, odd.title);
    }
}

void DBusNotificationCenterTest::isUnavailableWithoutABus()
{
    const auto center = this->center();
    QVERIFY(!center->canServeThisProcess());
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    center->add(claude);
}

void DBusNotificationCenterTest::isAvailableAgainWhenTheBusIsBack()
{
    daemon_->start();
    auto server = std::make_unique<FakeNotificationServer>(*daemon_, plain);
    const auto center = this->center();
    center->add(claude);
    QTRY_COMPARE(server->notifications().size(), 1);

    daemon_->kill();
    server.reset();
    QTRY_COMPARE(status(*center), AuthorizationStatus::notDetermined);
    QVERIFY(center->canServeThisProcess());

    daemon_->start();
    server = std::make_unique<FakeNotificationServer>(*daemon_, markup);
    QTRY_COMPARE(server->questions(), 1);
    center->add(odd);
    QTRY_COMPARE(server->notifications().size(), 1);
    QCOMPARE(server->notifications().first().body, u"a &lt; b &amp; c &gt; \"d\""_s);
    QCOMPARE(server->questions(), 1); // no alert waited for the bus
}

void DBusNotificationCenterTest::keepsAlertsWhenTheBusIsLost()
{
    daemon_->start();
    const QTemporaryDir directory;
    const auto started = directory.filePath(u"started"_s);
    addStartableServer(started);
    const auto bus = std::make_shared<BusConnection>(daemon_->address());
    DBusNotificationCenter center(bus);
    center.add(claude);
    QTRY_VERIFY(QFile::exists(started));
    daemon_->kill();
    QTRY_VERIFY(!bus->connection().isConnected());
    center.add(odd); // before and after the program has heard that the bus is gone
    QTRY_VERIFY(!bus->isConnected());
    center.add(claude);

    // The bus starts the server again because an alert waits for it.
    QVERIFY(QFile::remove(started));
    daemon_->start();
    QTRY_VERIFY(QFile::exists(started));
    const FakeNotificationServer server(*daemon_, plain);
    QTRY_COMPARE(server.notifications().size(), 3);
    QCOMPARE(server.notifications().at(0).summary, claude.title);
}

void DBusNotificationCenterTest::isAuthorizedByARunningServer()
{
    daemon_->start();
    const FakeNotificationServer server(*daemon_, plain);
    const auto center = this->center();
    QCOMPARE(status(*center), AuthorizationStatus::authorized); // the bus was asked
    QTRY_COMPARE(server.questions(), 1);
    QVERIFY(center->authorizationStatus().isFinished()); // the owner is known by now
    QCOMPARE(status(*center), AuthorizationStatus::authorized);
}

void DBusNotificationCenterTest::isAuthorizedByAServerThatCanBeStarted()
{
    daemon_->start();
    daemon_->addActivatable(u"org.freedesktop.Notifications"_s, u"/bin/false"_s);
    const auto center = this->center();
    QCOMPARE(status(*center), AuthorizationStatus::authorized);
}

void DBusNotificationCenterTest::isNotDeterminedWithoutAServer()
{
    daemon_->start();
    const auto center = this->center();
    QCOMPARE(status(*center), AuthorizationStatus::notDetermined);
}

void DBusNotificationCenterTest::isNotDeterminedWithoutABus()
{
    const auto center = this->center();
    QCOMPARE(status(*center), AuthorizationStatus::notDetermined);
}

void DBusNotificationCenterTest::doesNotAskTheUserForPermission()
{
    daemon_->start();
    const auto center = this->center();
    QVERIFY(center->requestAuthorization().isFinished());
}

} // namespace kelvo

QTEST_MAIN(kelvo::DBusNotificationCenterTest)
#include "tst_dbusnotificationcenter.moc"
