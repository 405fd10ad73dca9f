#include "support/ViewScene.h"

#include "windows/settings/SettingsState.h"

#include <QTcpServer>
#include <QTcpSocket>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// The settings window with a channel sheet.
struct Scene : ViewScene
{
    ~Scene() { view.setSource({}); }
    void open() { show(u"settings/SettingsView.qml"_s, {{u"settings"_s, QVariant::fromValue(&state)}}, {400, 560}); }
    void open(RemoteChannel channel)
    {
        open();
        state.tapChannel(rawValue(channel));
        settle();
        QVERIFY(sheet());
    }

    QQuickItem *sheet() const { return item(u"channelSheet"_s); }
    QQuickItem *input(int index) const { return item(u"field-%1"_s.arg(index), u"input"_s); }
    bool isEnabled(const QString &name) const { return item(name)->isEnabled(); }
    QString value(const QString &row) const { return text(item(row, u"value"_s)); }

    SettingsState state{stores.settings, stores.notifier};
};

/// The sheet without the window, for channels for which the window does not open it.
struct BareSheet : ViewScene
{
    explicit BareSheet(RemoteChannel channel)
        : state(channel, stores.settings, stores.notifier)
    {
    }
    ~BareSheet() { view.setSource({}); }
    void open() { show(u"channel/ChannelSheet.qml"_s, {{u"sheet"_s, QVariant::fromValue(&state)}}); }

    ChannelSheetState state;
};

} // namespace

class ChannelSheetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }

    void slackWithoutAWebhookHasItsButtonsDisabledAndOneCharacterEnablesThem();
    void telegramNeedsTokenAndChatId();
    void everyKeystrokeIsStoredExactlyAsTyped();
    void fieldsFollowTheStore();
    void armingSlackLeavesTelegramConnected();
    void emailHasOnlyTheValuesAndTheButtons();
    void aTestShowsItsResultAndKeepsTheOldOneMeanwhile();
    void theSummaryOfAlertsFollowsTheOutageSwitch();
    void doneAndEscapeClose_data();
    void doneAndEscapeClose();
    void theFocusStaysInsideAndIsRestored();
    void theWindowBehindCannotBeClicked();
    void aScreenReaderSeesTheFields();
    void partsHaveTheirSizes();
    void matchesTheGoldenPictures_data();
    void matchesTheGoldenPictures();
    void matchesTheGoldenPicturesOverTheWindow_data() { matchesTheGoldenPictures_data(); }
    void matchesTheGoldenPicturesOverTheWindow();
};

void ChannelSheetTest::slackWithoutAWebhookHasItsButtonsDisabledAndOneCharacterEnablesThem()
{
    Scene scene;
    scene.open(RemoteChannel::slack);
    QVERIFY(!scene.isEnabled(u"arm"_s));
    QVERIFY(!scene.isEnabled(u"sendTest"_s));
    QVERIFY(scene.isEnabled(u"done"_s));
    scene.click(scene.input(1));
    scene.type(u"x"_s);
    QVERIFY(!scene.isEnabled(u"arm"_s));
    scene.click(scene.input(0));
    scene.type(u"x"_s);
    QVERIFY(scene.isEnabled(u"arm"_s));
    QVERIFY(scene.isEnabled(u"sendTest"_s));
}

void ChannelSheetTest::telegramNeedsTokenAndChatId()
{
    Scene scene;
    scene.open(RemoteChannel::telegram);
    scene.type(u"7:x"_s);
    QCOMPARE(scene.stores.settings.telegramBotToken(), u"7:x"_s);
    QVERIFY(!scene.isEnabled(u"arm"_s));
    QVERIFY(!scene.isEnabled(u"sendTest"_s));
    scene.key(Qt::Key_Tab);
    scene.type(u"-1"_s);
    QCOMPARE(scene.stores.settings.telegramChatID(), u"-1"_s);
    QVERIFY(scene.isEnabled(u"arm"_s));
    QVERIFY(scene.isEnabled(u"sendTest"_s));
}

void ChannelSheetTest::everyKeystrokeIsStoredExactlyAsTyped()
{
    Scene scene;
    scene.open(RemoteChannel::slack);
    const int writes = scene.stores.preferences.writeCount(u"slackWebhookURL"_s);
    scene.type(u" a "_s);
    QCOMPARE(scene.stores.preferences.writeCount(u"slackWebhookURL"_s), writes + 3);
    QCOMPARE(scene.stores.preferences.text(u"slackWebhookURL"_s), u" a "_s);
    scene.key(Qt::Key_Backspace);
    QCOMPARE(scene.stores.settings.slackWebhookURL(), u" a"_s);
}

void ChannelSheetTest::fieldsFollowTheStore()
{
    Scene scene;
    scene.open(RemoteChannel::slack);
    QVERIFY(scene.item(u"field-0"_s, u"placeholder"_s)->isVisible());
    QCOMPARE(scene.text(scene.item(u"field-0"_s, u"placeholder"_s)), u"https://hooks.slack.com/services/…"_s);
    scene.type(u"a"_s);
    scene.stores.settings.setSlackWebhookURL(u"https://elsewhere"_s);
    QCOMPARE(scene.text(scene.input(0)), u"https://elsewhere"_s);
    QVERIFY(!scene.item(u"field-0"_s, u"placeholder"_s)->isVisible());
}

void ChannelSheetTest::armingSlackLeavesTelegramConnected()
{
    Scene scene;
    auto &settings = scene.stores.settings;
    settings.setTelegramBotToken(u"7:x"_s);
    settings.setTelegramChatID(u"1"_s);
    settings.setArmedChannel(RemoteChannel::telegram);
    settings.setSlackWebhookURL(u"x"_s);
    scene.open(RemoteChannel::slack);
    QCOMPARE(scene.item(u"arm"_s)->property("title").toString(), u"Arm this channel"_s);
    scene.click(scene.item(u"arm"_s));
    QCOMPARE(settings.armedChannel(), RemoteChannel::slack);
    QCOMPARE(scene.item(u"arm"_s)->property("title").toString(), u"Armed"_s);
    QVERIFY(scene.isEnabled(u"arm"_s));
    QCOMPARE(scene.text(scene.item(u"channel-telegram"_s, u"state"_s)), u"Connected"_s);
    QCOMPARE(scene.text(scene.item(u"channel-slack"_s, u"state"_s)), u"Armed"_s);
}

void ChannelSheetTest::emailHasOnlyTheValuesAndTheButtons()
{
    BareSheet scene(RemoteChannel::email);
    scene.open();
    QCOMPARE(scene.text(scene.item(u"title"_s)), u"Email"_s);
    QVERIFY(!scene.item(u"description"_s)->isVisible());
    QVERIFY(!scene.item(u"fields"_s)->isVisible());
    QVERIFY(!scene.item(u"footnote"_s)->isVisible());
    QVERIFY(scene.item(u"toldAbout"_s)->isVisible());
    QVERIFY(scene.item(u"testResult"_s)->isVisible());
    QVERIFY(!scene.item(u"arm"_s)->isEnabled());
    QVERIFY(!scene.item(u"sendTest"_s)->isEnabled());
    QVERIFY(scene.item(u"done"_s)->isEnabled());
}

void ChannelSheetTest::aTestShowsItsResultAndKeepsTheOldOneMeanwhile()
{
    Scene scene;
    scene.stores.settings.setSlackWebhookURL(u" "_s);
    scene.open(RemoteChannel::slack);
    QCOMPARE(scene.value(u"testResult"_s), u"Not sent yet"_s);
    scene.click(scene.item(u"sendTest"_s));
    QTRY_COMPARE(scene.value(u"testResult"_s), u"Couldn’t send — check the details"_s);

    // A server that accepts the connection and does not answer yet.
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    scene.stores.settings.setSlackWebhookURL(u"http://127.0.0.1:%1/hook"_s.arg(server.serverPort()));
    scene.click(scene.item(u"sendTest"_s));
    QTRY_VERIFY(server.hasPendingConnections());
    auto *connection = server.nextPendingConnection();
    QTRY_VERIFY(connection->bytesAvailable() > 0);
    QCOMPARE(scene.value(u"testResult"_s), u"Couldn’t send — check the details"_s);
    scene.click(scene.item(u"arm"_s));
    QCOMPARE(scene.stores.settings.armedChannel(), RemoteChannel::slack);
    connection->write("HTTP/1.1 204 No Content\r\n\r\n");
    QTRY_COMPARE(scene.value(u"testResult"_s), u"Test sent"_s);

    // The result is the last one of any channel.
    scene.state.tapChannel(u"telegram"_s);
    settle();
    QCOMPARE(scene.value(u"testResult"_s), u"Test sent"_s);
}

void ChannelSheetTest::theSummaryOfAlertsFollowsTheOutageSwitch()
{
    Scene scene;
    scene.open(RemoteChannel::slack);
    QCOMPARE(scene.value(u"toldAbout"_s), u"Recovery only"_s);
    scene.stores.settings.setOutageAlertsEnabled(true);
    QCOMPARE(scene.value(u"toldAbout"_s), u"Recovery and outages"_s);
}

void ChannelSheetTest::doneAndEscapeClose_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("Done") << false;
    QTest::newRow("Escape") << true;
}

void ChannelSheetTest::doneAndEscapeClose()
{
    QFETCH(bool, byKey);
    Scene scene;
    scene.open(RemoteChannel::slack);
    scene.type(u"abc"_s);
    if (byKey) {
        scene.key(Qt::Key_Escape);
    } else {
        scene.click(scene.item(u"done"_s));
    }
    QTRY_VERIFY(!scene.sheet());
    QVERIFY(!scene.state.channelSheet());
    QCOMPARE(scene.stores.settings.slackWebhookURL(), u"abc"_s);
    scene.state.tapChannel(u"slack"_s);
    settle();
    QCOMPARE(scene.text(scene.input(0)), u"abc"_s);
}

void ChannelSheetTest::theFocusStaysInsideAndIsRestored()
{
    Scene scene;
    scene.stores.settings.setSlackWebhookURL(u"x"_s);
    scene.open();
    auto *row = scene.item(u"channel-slack"_s);
    QVERIFY(scene.tabTo(row));
    scene.key(Qt::Key_Space);
    QVERIFY(scene.sheet());
    QCOMPARE(scene.view.activeFocusItem(), scene.input(0));
    QStringList reached;
    for (int i = 0; i < 10; ++i) {
        scene.key(i < 5 ? Qt::Key_Tab : Qt::Key_Backtab);
        QVERIFY(scene.sheet()->isAncestorOf(scene.view.activeFocusItem()));
        reached.append(scene.view.activeFocusItem()->objectName());
    }
    QCOMPARE(reached.first(5), (QStringList{u"input"_s, u"arm"_s, u"sendTest"_s, u"done"_s, u"input"_s}));
    scene.key(Qt::Key_Escape);
    QTRY_VERIFY(!scene.sheet());
    QCOMPARE(scene.view.activeFocusItem(), row);
}

void ChannelSheetTest::theWindowBehindCannotBeClicked()
{
    Scene scene;
    scene.open(RemoteChannel::slack);
    const auto box = scene.middle(scene.item(u"service-claude"_s, u"box"_s));
    scene.stores.settings.setEnabledServices({ServiceID::claude, ServiceID::cursor});
    QVERIFY(!scene.frame(u"channelSheet"_s).contains(box));
    QTest::mouseClick(&scene.view, Qt::LeftButton, {}, box);
    settle();
    QCOMPARE(scene.stores.settings.enabledServices().size(), std::size_t(2));
    QVERIFY(scene.sheet());
}

void ChannelSheetTest::aScreenReaderSeesTheFields()
{
    Scene scene;
    scene.open(RemoteChannel::telegram);
    auto *token = accessible(scene.input(0));
    QCOMPARE(token->role(), QAccessible::EditableText);
    QCOMPARE(token->text(QAccessible::Name), u"Bot token"_s);
    QCOMPARE(accessibleName(scene.input(1)), u"Chat ID"_s);
    QCOMPARE(accessibleName(scene.item(u"toldAbout"_s)), u"Tell me about: Recovery only"_s);
    QCOMPARE(accessible(scene.sheet())->role(), QAccessible::Dialog);
    QCOMPARE(accessibleName(scene.sheet()), u"Telegram"_s);
    QCOMPARE(accessibleName(scene.item(u"arm"_s)), u"Arm this channel"_s);
}

void ChannelSheetTest::partsHaveTheirSizes()
{
    Scene scene;
    scene.open(RemoteChannel::slack);
    const auto sheet = scene.frame(scene.sheet());
    QCOMPARE(sheet.width(), 360.0);
    QCOMPARE(sheet.center().x(), 200.0);
    QCOMPARE(scene.frame(findItem(scene.sheet(), u"title"_s)).topLeft() - sheet.topLeft(), QPointF(22, 20));
    QCOMPARE(scene.frame(scene.input(0)).width(), 190.0);
    QVERIFY(scene.frame(u"toldAbout"_s).height() >= 31);
    QCOMPARE(scene.frame(u"arm"_s).height(), 26.0);
    QCOMPARE(scene.frame(u"arm"_s).bottom(), sheet.bottom() - 20);
    QCOMPARE(scene.frame(u"done"_s).right(), sheet.right() - 22);
}

void ChannelSheetTest::matchesTheGoldenPictures_data()
{
    QTest::addColumn<RemoteChannel>("channel");
    QTest::addColumn<bool>("configured");
    QTest::addColumn<bool>("dark");
    for (const bool dark : {false, true}) {
        const char *look = dark ? "dark" : "light";
        QTest::addRow("slack-%s", look) << RemoteChannel::slack << false << dark;
        QTest::addRow("slack-configured-%s", look) << RemoteChannel::slack << true << dark;
        QTest::addRow("telegram-%s", look) << RemoteChannel::telegram << false << dark;
        QTest::addRow("email-%s", look) << RemoteChannel::email << false << dark;
    }
}

void ChannelSheetTest::matchesTheGoldenPictures()
{
    QFETCH(RemoteChannel, channel);
    QFETCH(bool, configured);
    QFETCH(bool, dark);
    BareSheet scene(channel);
    scene.appearance.dark = dark;
    if (configured) {
        scene.stores.settings.setSlackWebhookURL(u"https://hooks.slack.com/services/T0/B0/x"_s);
    }
    scene.open();
    // Move the focus out of the fields, because the caret blinks.
    scene.item(u"done"_s)->forceActiveFocus();
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(picture(scene.view), u"sheet-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

void ChannelSheetTest::matchesTheGoldenPicturesOverTheWindow()
{
    QFETCH(RemoteChannel, channel);
    QFETCH(bool, configured);
    QFETCH(bool, dark);
    if (channel != RemoteChannel::slack || !configured) {
        return;
    }
    Scene scene;
    scene.appearance.dark = dark;
    scene.stores.settings.setSlackWebhookURL(u"https://hooks.slack.com/services/T0/B0/x"_s);
    scene.open(channel);
    scene.item(u"done"_s)->forceActiveFocus();
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(
        golden.difference(picture(scene.view), dark ? u"sheet-over-settings-dark"_s : u"sheet-over-settings-light"_s),
        QString());
}

} // namespace kelvo

QTEST_MAIN(kelvo::ChannelSheetTest)
#include "tst_channelsheet.moc"
