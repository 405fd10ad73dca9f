#include "windows/ViewScene.h"

#include "windows/SettingsState.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// The settings window with a sheet over it.
struct Scene : ViewScene
{
    ~Scene() { view.setSource({}); }
    void open()
    {
        show(u"SettingsView.qml"_s, {{u"settings"_s, QVariant::fromValue(&state)}}, {400, 560});
    }
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

/// The sheet alone, for a channel that the window opens none for.
struct BareSheet : ViewScene
{
    explicit BareSheet(RemoteChannel channel)
        : state(channel, stores.settings, stores.notifier)
    {
    }
    ~BareSheet() { view.setSource({}); }
    void open() { show(u"ChannelSheet.qml"_s, {{u"sheet"_s, QVariant::fromValue(&state)}}); }

    ChannelSheetState state;
};

} // namespace

class ChannelSheetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }

    void looksAsItShould_data();
    void looksAsItShould();
    void looksAsItShouldOverTheWindow_data() { looksAsItShould_data(); }
    void looksAsItShouldOverTheWindow();
};

void ChannelSheetTest::looksAsItShould_data()
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

void ChannelSheetTest::looksAsItShould()
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
    // The blinking caret is not part of the look.
    scene.item(u"done"_s)->forceActiveFocus();
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(scene.view.grabWindow(), u"sheet-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

void ChannelSheetTest::looksAsItShouldOverTheWindow()
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
    QCOMPARE(golden.difference(scene.view.grabWindow(), dark ? u"sheet-over-settings-dark"_s : u"sheet-over-settings-light"_s),
             QString());
}

} // namespace kelvo

QTEST_MAIN(kelvo::ChannelSheetTest)
#include "tst_channelsheet.moc"
