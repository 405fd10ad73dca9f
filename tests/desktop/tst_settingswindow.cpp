#include "DesktopWindow.h"
#include "Hand.h"
#include "KelvoProcess.h"
#include "Screen.h"
#include "TrayItem.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTest>

#include <filesystem>

namespace kelvo {

using namespace Qt::StringLiterals;

/// The settings window, operated by mouse and keyboard, and the files that it writes.
class SettingsWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aServiceDraggedToTheTopIsShownFirst();
    void launchAtLoginWritesAndRemovesTheAutostartFile();
    void launchAtLoginIsRevertedWhenItCannotBeWritten();
    void slackIsSetUpTestedArmedAndAlerted();
    void aScreenReaderHearsSwitches();
    void aScreenReaderHearsWhereAServiceMoves();
    void aScreenReaderHearsWhatTheSheetDoes();
    void aScreenReaderSeesNamedGroups();

private:
    QString stored(const QString &key) const;
    std::optional<Accessible> checkBox(const QString &name) const { return kelvo_->find(Accessible::CheckBox, name); }
    void openPopover(RingState state);
    void closePopover();
    QString autostartFile() const { return kelvo_->configurationPath(u"autostart/app.kelvo.Kelvo.desktop"_s); }

    std::unique_ptr<SimulatedInternet> internet_;
    std::unique_ptr<KelvoProcess> kelvo_;
};

void SettingsWindowTest::init()
{
    internet_ = std::make_unique<SimulatedInternet>();
    kelvo_ = std::make_unique<KelvoProcess>(*internet_);
    kelvo_->writeSettings("[General]\nhasOnboarded=true\nenabledServices=claude, cursor\n");
    kelvo_->start();
    QTRY_VERIFY(Screen::findRing(RingState::available));
    TrayItem::choose(u"Settings…"_s);
    QTRY_COMPARE(DesktopWindow::activeTitle(), u"Kelvo Settings"_s);
}

void SettingsWindowTest::cleanup()
{
    kelvo_->endInSilence();
    kelvo_.reset();
}

QString SettingsWindowTest::stored(const QString &key) const
{
    // A list is stored as a text with commas.
    return QSettings(kelvo_->settingsFile(), QSettings::IniFormat).value(key).toStringList().join(u',');
}

void SettingsWindowTest::openPopover(RingState state)
{
    Hand::click(Screen::findRing(state)->center());
    QTRY_COMPARE(DesktopWindow::activeTitle(), u"Kelvo"_s);
    // Move the pointer away, because the panel highlights the item under it.
    Hand::moveTo({100, 500});
}

void SettingsWindowTest::closePopover()
{
    Hand::press(u"Escape"_s);
    QTRY_VERIFY(!DesktopWindow::titled(u"Kelvo"_s));
    Hand::waitOutDoubleClick();
}

void SettingsWindowTest::aServiceDraggedToTheTopIsShownFirst()
{
    QTRY_COMPARE(TrayItem::toolTip(), u"Claude: Operational"_s);
    const auto top = checkBox(u"Claude, primary"_s);
    const auto cursor = checkBox(u"Cursor"_s);
    QVERIFY(top && cursor);
    const QPoint grip(cursor->geometry().left() + 16, cursor->geometry().center().y());
    Hand::drag(grip, QPoint(grip.x(), top->geometry().center().y() - 4));
    QTRY_VERIFY(stored(u"serviceOrder"_s).startsWith(u"cursor,claude,"_s));
    QVERIFY(checkBox(u"Cursor, primary"_s));
    using std::filesystem::perms;
    QVERIFY(std::filesystem::status(kelvo_->settingsFile().toStdString()).permissions()
            == (perms::owner_read | perms::owner_write));

    openPopover(RingState::available);
    closePopover();
    QTRY_COMPARE(TrayItem::toolTip(), u"Cursor: Operational"_s);
}

void SettingsWindowTest::launchAtLoginWritesAndRemovesTheAutostartFile()
{
    QVERIFY(!QFile::exists(autostartFile()));
    QVERIFY(!checkBox(u"Launch at login"_s)->isChecked());
    QVERIFY(kelvo_->clickOn(Accessible::CheckBox, u"Launch at login"_s));
    QTRY_VERIFY(checkBox(u"Launch at login"_s)->isChecked());
    QFile file(autostartFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("\nExec="));
    file.close();
    QVERIFY(kelvo_->clickOn(Accessible::CheckBox, u"Launch at login"_s));
    QTRY_VERIFY(!checkBox(u"Launch at login"_s)->isChecked());
    QVERIFY(!file.exists());
}

void SettingsWindowTest::launchAtLoginIsRevertedWhenItCannotBeWritten()
{
    QVERIFY(QDir().mkpath(autostartFile() + u"/in the way"_s));
    QVERIFY(kelvo_->clickOn(Accessible::CheckBox, u"Launch at login"_s));
    // When a later click on another switch has taken effect, this click has been processed too.
    QVERIFY(kelvo_->clickOn(Accessible::CheckBox, u"Outage alerts"_s));
    QTRY_VERIFY(checkBox(u"Outage alerts"_s)->isChecked());
    QVERIFY(!checkBox(u"Launch at login"_s)->isChecked());
    QVERIFY(QDir(autostartFile()).exists());
}

void SettingsWindowTest::slackIsSetUpTestedArmedAndAlerted()
{
    const auto posts = [this] { return internet_->requestsTo(u"hooks.slack.com"_s); };
    QVERIFY(kelvo_->clickOn(Accessible::Button, u"Slack"_s));
    QVERIFY(kelvo_->clickOn(Accessible::Text, u"Webhook URL"_s));
    Hand::type(u"https://hooks.slack.com/services/T/B/x"_s);
    QTRY_COMPARE(stored(u"slackWebhookURL"_s), u"https://hooks.slack.com/services/T/B/x"_s);

    QVERIFY(kelvo_->clickOn(Accessible::Button, u"Send test"_s));
    QTRY_COMPARE(posts().size(), 1);
    QCOMPARE(posts().constFirst().path, "/services/T/B/x"_ba);
    QCOMPARE(posts().constFirst().body, R"({"text":"Kelvo is set up. Claude is back. You can continue working."})"_ba);
    QVERIFY(kelvo_->find(Accessible::Label, u"Test message: Test sent"_s));

    QVERIFY(kelvo_->clickOn(Accessible::Button, u"Arm this channel"_s));
    QTRY_COMPARE(stored(u"armedChannel"_s), u"slack"_s);
    QVERIFY(kelvo_->clickOn(Accessible::Button, u"Done"_s));
    QVERIFY(kelvo_->find(Accessible::Button, u"Slack"_s));
    using std::filesystem::perms;
    QVERIFY(std::filesystem::status(kelvo_->settingsFile().toStdString()).permissions()
            == (perms::owner_read | perms::owner_write));

    // Opening the popover checks at once, so the test need not wait for the next round.
    internet_->setComponent(StatusPage::Claude, u"claude.ai"_s, u"major_outage"_s);
    openPopover(RingState::available);
    QTRY_VERIFY(Screen::findRing(RingState::outage));
    closePopover();
    internet_->setAllOperational(StatusPage::Claude);
    openPopover(RingState::outage);
    QTRY_COMPARE(posts().size(), 2);
    QCOMPARE(posts().constLast().body, R"({"text":"Claude is back. You can continue working."})"_ba);
    QTRY_VERIFY(Screen::findRing(RingState::available));
}

void SettingsWindowTest::aScreenReaderHearsSwitches()
{
    const AccessibilityEvents events;
    QStringList expected;
    for (const auto &state : {u"on"_s, u"off"_s, u"on"_s, u"off"_s}) {
        QVERIFY(kelvo_->clickOn(Accessible::CheckBox, u"Launch at login"_s));
        expected.append(u"Launch at login: "_s + state);
        QTRY_COMPARE(events.heard(), expected);
        QCOMPARE(checkBox(u"Launch at login"_s)->isChecked(), state == u"on");
    }
    QVERIFY(kelvo_->clickOn(Accessible::CheckBox, u"Cursor"_s));
    QTRY_COMPARE(events.heard().constLast(), u"Cursor: off"_s);
}

void SettingsWindowTest::aScreenReaderHearsWhereAServiceMoves()
{
    const AccessibilityEvents events;
    Hand::press(u"Tab"_s);
    Hand::press(u"alt+Down"_s);
    QTRY_COMPARE(events.heard(), QStringList{u"Claude, 2 of 8"_s});
    Hand::press(u"alt+Down"_s);
    QTRY_COMPARE(events.heard(), (QStringList{u"Claude, 2 of 8"_s, u"Claude, 3 of 8"_s}));
    QVERIFY(kelvo_->find(Accessible::Label, u"Drag a service, or press Alt and an arrow key, to move it."_s));
}

void SettingsWindowTest::aScreenReaderHearsWhatTheSheetDoes()
{
    QVERIFY(kelvo_->clickOn(Accessible::Button, u"Slack"_s));
    QVERIFY(kelvo_->find(Accessible::Dialog, u"Slack"_s));
    QVERIFY(kelvo_->clickOn(Accessible::Text, u"Webhook URL"_s));
    Hand::type(u"https://hooks.slack.com/services/T/B/x"_s);
    const AccessibilityEvents events;
    QVERIFY(kelvo_->clickOn(Accessible::Button, u"Arm this channel"_s));
    QTRY_COMPARE(events.heard(), QStringList{u"Armed"_s});
    QVERIFY(kelvo_->clickOn(Accessible::Button, u"Send test"_s));
    QTRY_COMPARE(events.heard(), (QStringList{u"Armed"_s, u"Test sent"_s}));
}

void SettingsWindowTest::aScreenReaderSeesNamedGroups()
{
    for (const auto &group : {u"Services"_s, u"Check every"_s, u"Watching"_s, u"Tell me where"_s}) {
        QVERIFY2(kelvo_->find(Accessible::Panel, group), qPrintable(group));
    }
    QVERIFY(kelvo_->clickOn(Accessible::Button, u"Show onboarding again"_s));
    QTRY_COMPARE(DesktopWindow::activeTitle(), u"Welcome to Kelvo"_s);
    QVERIFY(kelvo_->find(Accessible::Panel, u"Stop checking. We’ll tell you."_s));
    Hand::press(u"Return"_s);
    const auto page = kelvo_->find(Accessible::Panel, u"Which one matters most?"_s);
    QVERIFY(page);
    QVERIFY(page->find(Accessible::RadioButton, u"Claude"_s)->isChecked());
    Hand::press(u"Down"_s);
    QTRY_VERIFY(page->find(Accessible::RadioButton, u"ChatGPT"_s)->isChecked());
    Hand::press(u"Return"_s);
    QVERIFY(kelvo_->find(Accessible::Panel, u"Kelvo needs to notify you"_s));
}

} // namespace kelvo

QTEST_MAIN(kelvo::SettingsWindowTest)
#include "tst_settingswindow.moc"
