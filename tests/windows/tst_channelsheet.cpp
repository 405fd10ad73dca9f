#include "support/StatePictures.h"
#include "support/ViewScene.h"

#include "windows/settings/SettingsState.h"

#include <QClipboard>
#include <QStyleHints>
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
    /// What a field shows while it is not edited.
    QQuickItem *still(int index) const { return item(u"field-%1"_s.arg(index), u"still"_s); }
    QQuickItem *menuItem(const QString &title) const { return item(title); }
    bool isEnabled(const QString &name) const { return item(name)->isEnabled(); }
    QString value(const QString &row) const { return words(item(row, u"value"_s)); }

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
    void aScreenReaderSeesOneNamedDialog();
    void aScreenReaderHearsWhatTheButtonsDo();
    void openingSelectsTheTextOfTheFirstField();
    void aLongTextIsElidedUnlessItIsEdited();
    void theContextMenuCutsCopiesAndPastes();
    void theContextMenuOpensByKey_data();
    void theContextMenuOpensByKey();
    void partsHaveTheirSizes();
    void disabledButtonsLookDisabled_data();
    void disabledButtonsLookDisabled();
    void matchesTheGoldenPictures_data();
    void matchesTheGoldenPictures();
    void statesMatchTheGoldenPictures_data();
    void statesMatchTheGoldenPictures();
    void highContrastMatchesTheGoldenPictures_data();
    void highContrastMatchesTheGoldenPictures();
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
    QVERIFY(scene.still(0)->isVisible());
    QCOMPARE(scene.text(scene.still(0)), u"https://hooks.slack.com/services/…"_s);
    scene.type(u"a"_s);
    scene.stores.settings.setSlackWebhookURL(u"https://elsewhere"_s);
    QCOMPARE(scene.text(scene.input(0)), u"https://elsewhere"_s);
    QVERIFY(!scene.still(0)->isVisible());
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
    const auto below = scene.middle(scene.item(u"segment-0"_s));
    QVERIFY(QRect({}, scene.view.size()).contains(below));
    QVERIFY(!scene.frame(u"channelSheet"_s).contains(below));
    QTest::mouseClick(&scene.view, Qt::LeftButton, {}, below);
    settle();
    QCOMPARE(scene.stores.settings.checkInterval(), CheckInterval::fiveMinutes);
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
    QCOMPARE(accessibleName(scene.item(u"arm"_s)), u"Arm this channel"_s);
}

void ChannelSheetTest::aScreenReaderSeesOneNamedDialog()
{
    Scene scene;
    scene.open(RemoteChannel::telegram);
    QStringList dialogs;
    for (const auto *ancestor = accessible(scene.input(0)); ancestor; ancestor = ancestor->parent()) {
        if (ancestor->role() == QAccessible::Dialog) {
            dialogs.append(ancestor->text(QAccessible::Name));
        }
    }
    QCOMPARE(dialogs, QStringList{u"Telegram"_s});
}

void ChannelSheetTest::aScreenReaderHearsWhatTheButtonsDo()
{
    Scene scene;
    scene.stores.settings.setSlackWebhookURL(u"x"_s);
    scene.open(RemoteChannel::slack);
    Announcements announcements(scene.item(u"announcer"_s));
    scene.click(scene.item(u"arm"_s));
    QCOMPARE(announcements.take(), QStringList{u"Armed"_s});
    // The same result is told again.
    for (int i = 0; i < 2; ++i) {
        QStringList heard;
        scene.click(scene.item(u"sendTest"_s));
        QTRY_VERIFY(!(heard += announcements.take()).isEmpty());
        QCOMPARE(heard, QStringList{u"Couldn’t send — check the details"_s});
    }
}

void ChannelSheetTest::openingSelectsTheTextOfTheFirstField()
{
    Scene scene;
    scene.stores.settings.setSlackWebhookURL(u"https://old"_s);
    scene.open(RemoteChannel::slack);
    QCOMPARE(scene.input(0)->property("selectedText").toString(), u"https://old"_s);
    scene.type(u"n"_s);
    QCOMPARE(scene.stores.settings.slackWebhookURL(), u"n"_s);
}

void ChannelSheetTest::aLongTextIsElidedUnlessItIsEdited()
{
    Scene scene;
    const auto address = u"https://hooks.slack.com/services/T0123456/B0123456/abcdefghijklmnop"_s;
    scene.stores.settings.setSlackWebhookURL(address);
    scene.open(RemoteChannel::slack);
    QVERIFY(!scene.still(0)->isVisible());
    scene.click(scene.input(1));
    QVERIFY(scene.still(0)->isVisible());
    QCOMPARE(scene.text(scene.still(0)), address);
    QVERIFY(scene.still(0)->property("truncated").toBool());
    QCOMPARE(scene.input(0)->property("color").value<QColor>().alpha(), 0);
    QCOMPARE(accessible(scene.input(0))->text(QAccessible::Value), address);
    scene.click(scene.input(0));
    QVERIFY(!scene.still(0)->isVisible());
}

void ChannelSheetTest::theContextMenuCutsCopiesAndPastes()
{
    Scene scene;
    auto &settings = scene.stores.settings;
    settings.setSlackWebhookURL(u"https://a"_s);
    scene.open(RemoteChannel::slack);
    QGuiApplication::clipboard()->clear();
    const auto openMenu = [&scene](int field) {
        QTest::mouseClick(&scene.view, Qt::RightButton, {}, scene.middle(scene.input(field)));
        settle();
        QVERIFY(scene.menuItem(u"Paste"_s));
    };
    openMenu(0);
    QVERIFY(scene.menuItem(u"Cut"_s)->isEnabled());
    QVERIFY(scene.menuItem(u"Copy"_s)->isEnabled());
    QVERIFY(!scene.menuItem(u"Paste"_s)->isEnabled());
    QCOMPARE(accessible(scene.menuItem(u"Cut"_s))->role(), QAccessible::MenuItem);
    QCOMPARE(accessibleName(scene.menuItem(u"Cut"_s)), u"Cut"_s);
    scene.click(scene.menuItem(u"Copy"_s));
    QCOMPARE(QGuiApplication::clipboard()->text(), u"https://a"_s);
    QCOMPARE(settings.slackWebhookURL(), u"https://a"_s);
    QTRY_COMPARE(scene.view.activeFocusItem(), scene.input(0));

    openMenu(0);
    scene.click(scene.menuItem(u"Cut"_s));
    QCOMPARE(settings.slackWebhookURL(), QString());
    QVERIFY(!scene.isEnabled(u"arm"_s));

    openMenu(1);
    QVERIFY(!scene.menuItem(u"Cut"_s)->isEnabled());
    QVERIFY(!scene.menuItem(u"Copy"_s)->isEnabled());
    scene.click(scene.menuItem(u"Paste"_s));
    QCOMPARE(settings.slackChannelLabel(), u"https://a"_s);
    QVERIFY(scene.sheet());
}

void ChannelSheetTest::theContextMenuOpensByKey_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("Menu") << Qt::Key_Menu << Qt::KeyboardModifiers();
    QTest::newRow("Shift+F10") << Qt::Key_F10 << Qt::KeyboardModifiers(Qt::ShiftModifier);
}

void ChannelSheetTest::theContextMenuOpensByKey()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    Scene scene;
    scene.stores.settings.setSlackWebhookURL(u"https://a"_s);
    scene.open(RemoteChannel::slack);
    scene.key(key, modifiers);
    QVERIFY(scene.menuItem(u"Cut"_s));
    scene.key(Qt::Key_Down);
    scene.key(Qt::Key_Return);
    QCOMPARE(scene.stores.settings.slackWebhookURL(), QString());
    QTRY_COMPARE(scene.view.activeFocusItem(), scene.input(0));
    scene.key(key, modifiers);
    scene.key(Qt::Key_Escape);
    QTRY_COMPARE(scene.view.activeFocusItem(), scene.input(0));
    QVERIFY(scene.sheet());
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
    QCOMPARE(sheet.top(), 0.0);
    for (const auto &row : {u"field-0"_s, u"field-1"_s, u"toldAbout"_s, u"testResult"_s}) {
        QCOMPARE(scene.frame(row).height(), 34.0);
    }
    QVERIFY(scene.frame(u"sendTest"_s).height() >= 24);
    QVERIFY(scene.frame(u"done"_s).height() >= 24);
    QCOMPARE(scene.frame(u"done"_s).center().y(), scene.frame(u"arm"_s).center().y());
    QCOMPARE(scene.frame(u"arm"_s).height(), 26.0);
    QCOMPARE(scene.frame(u"arm"_s).bottom(), sheet.bottom() - 20);
    QCOMPARE(scene.frame(u"done"_s).right(), sheet.right() - 22);
}

void ChannelSheetTest::disabledButtonsLookDisabled_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void ChannelSheetTest::disabledButtonsLookDisabled()
{
    QFETCH(bool, dark);
    Scene scene;
    scene.appearance.dark = dark;
    scene.open(RemoteChannel::slack);
    const auto color = [&scene](const QString &button, const char *part) {
        return scene.item(button)->property(part).value<QQuickItem *>()->property("color").value<QColor>().rgba();
    };
    QCOMPARE(QColor(color(u"arm"_s, "background")).hslSaturation(), 0);
    QCOMPARE(color(u"arm"_s, "contentItem"), scene.tokens.labelTertiary().rgba());
    QCOMPARE(color(u"sendTest"_s, "contentItem"), scene.tokens.labelTertiary().rgba());
    QCOMPARE(scene.item(u"sendTest"_s)->property("contentItem").value<QQuickItem *>()->opacity(), 1.0);
    scene.stores.settings.setSlackWebhookURL(u"x"_s);
    QCOMPARE(color(u"arm"_s, "background"), scene.tokens.action().rgba());
    QCOMPARE(color(u"sendTest"_s, "contentItem"), scene.tokens.link().rgba());
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

void ChannelSheetTest::statesMatchTheGoldenPictures_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void ChannelSheetTest::statesMatchTheGoldenPictures()
{
    QFETCH(bool, dark);
    // A caret that does not blink.
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    Scene scene;
    scene.appearance.dark = dark;
    scene.stores.settings.setSlackWebhookURL(u"https://hooks.slack.com/services/T0/B0/x"_s);
    scene.open(RemoteChannel::slack);
    StatePictures states(scene);
    states.add(scene.item(u"field-0"_s));
    states.addFocused(scene.input(1));
    states.addHovered(scene.item(u"field-0"_s), scene.input(0));
    for (const auto &button : {u"arm"_s, u"sendTest"_s, u"done"_s}) {
        states.addStates(scene.item(button));
    }
    scene.input(0)->forceActiveFocus();
    QMetaObject::invokeMethod(scene.input(0), "selectAll");
    QTest::mouseClick(&scene.view, Qt::RightButton, {}, scene.middle(scene.input(0)));
    settle();
    scene.hover(scene.middle(scene.menuItem(u"Copy"_s)));
    states.add(scene.sheet());
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(states.picture(), u"sheet-states-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

void ChannelSheetTest::highContrastMatchesTheGoldenPictures_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void ChannelSheetTest::highContrastMatchesTheGoldenPictures()
{
    QFETCH(bool, dark);
    Scene scene;
    scene.appearance.dark = dark;
    scene.appearance.contrast = true;
    scene.stores.settings.setSlackWebhookURL(u"https://hooks.slack.com/services/T0/B0/x"_s);
    scene.open(RemoteChannel::slack);
    scene.item(u"arm"_s)->forceActiveFocus(Qt::TabFocusReason);
    settle();
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(picture(scene.view),
                               u"sheet-high-contrast-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

} // namespace kelvo

QTEST_MAIN(kelvo::ChannelSheetTest)
#include "tst_channelsheet.moc"
