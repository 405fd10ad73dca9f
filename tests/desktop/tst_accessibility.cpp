#include "DesktopWindow.h"
#include "Hand.h"
#include "KelvoProcess.h"
#include "Screen.h"

#include <QTest>

namespace kelvo {

using namespace Qt::StringLiterals;

/// The popover as a screen reader sees it, over the accessibility bus.
class AccessibilityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void theHeroIsOneElement();
    void aRowReadsItsStatusAndMovesToTheTop();
    void reopeningReadsTheHeroAndAChangedStatusIsAnnounced();
    void theGearIsTheSettingsButton();
    void aClosedPopoverIsNotInTheAccessibilityTree();

private:
    std::unique_ptr<SimulatedInternet> internet_;
    std::unique_ptr<KelvoProcess> kelvo_;
};

void AccessibilityTest::init()
{
    internet_ = std::make_unique<SimulatedInternet>();
    internet_->setComponent(StatusPage::Cursor, u"IDE"_s, u"major_outage"_s);
    kelvo_ = std::make_unique<KelvoProcess>(*internet_);
    kelvo_->writeSettings("[General]\nhasOnboarded=true\nenabledServices=claude, cursor, gemini\n");
    kelvo_->start();
    QTRY_VERIFY(Screen::findRing(RingState::outage));
    QTRY_COMPARE(internet_->requestsTo(u"status.claude.com"_s).size(), 1);
    Hand::click(Screen::findRing(RingState::outage)->center());
    QTRY_VERIFY(DesktopWindow::titled(u"Kelvo"_s));
}

void AccessibilityTest::cleanup()
{
    kelvo_->endInSilence();
    kelvo_.reset();
}

void AccessibilityTest::theHeroIsOneElement()
{
    const auto hero = kelvo_->find(Accessible::Label, u"Cursor, Major outage, checked "_s);
    QVERIFY(hero);
    QVERIFY2(hero->name().endsWith(u"just now") || hero->name().endsWith(u" ago"), qPrintable(hero->name()));
    QVERIFY(kelvo_->find(Accessible::Label, u"Notifying this Mac"_s));
}

void AccessibilityTest::aRowReadsItsStatusAndMovesToTheTop()
{
    const auto row = kelvo_->find(Accessible::Button, u"Gemini"_s);
    QVERIFY(row);
    QCOMPARE(row->description(), u"Shows this service's status at the top"_s);
    QVERIFY(DesktopWindow::titled(u"Kelvo"_s)->geometry.contains(row->geometry()));
    QVERIFY(row->geometry().width() > 280);
    QVERIFY(row->actions().contains(u"Press"_s));
    row->act(u"Press"_s);
    QVERIFY(kelvo_->find(Accessible::Label, u"Gemini, Operational"_s));
    QVERIFY(kelvo_->find(Accessible::Button, u"Cursor, Major outage"_s));
}

void AccessibilityTest::reopeningReadsTheHeroAndAChangedStatusIsAnnounced()
{
    QVERIFY(kelvo_->find(Accessible::Button, u"Gemini"_s));
    // The check of the first opening would otherwise end while the popover is closed, which changes the hero.
    QTRY_COMPARE(internet_->requestsTo(u"status.claude.com"_s).size(), 2);
    const AccessibilityEvents events;
    Hand::press(u"Down"_s);
    QTRY_COMPARE(events.focused().value(events.focused().size() - 1), u"Claude, Operational"_s);
    Hand::press(u"Escape"_s);
    QTRY_VERIFY(!DesktopWindow::titled(u"Kelvo"_s));

    // Opening checks at once; the answer arrives while the popover is open.
    internet_->setComponent(StatusPage::Claude, u"claude.ai"_s, u"major_outage"_s);
    Hand::click(Screen::findRing(RingState::outage)->center());
    QTRY_COMPARE(events.heard(), QStringList{u"Claude, Major outage"_s});
    QTRY_VERIFY(events.focused().constLast().startsWith(u"Cursor, Major outage, checked "_s));
    // The time that the hero tells changes each second, which is not announced.
    const auto focused = events.focused();
    QTRY_VERIFY(kelvo_->find(Accessible::Label, u"Cursor, Major outage, checked 2 seconds ago"_s));
    QCOMPARE(events.focused(), focused);
    QCOMPARE(events.heard().size(), 1);
}

void AccessibilityTest::theGearIsTheSettingsButton()
{
    const auto gear = kelvo_->find(Accessible::Button, u"Settings"_s);
    QVERIFY(gear);
    QCOMPARE(gear->geometry().size(), QSize(26, 26));
    gear->act(u"Press"_s);
    QTRY_COMPARE(DesktopWindow::activeTitle(), u"Kelvo Settings"_s);
    QVERIFY(kelvo_->find(Accessible::CheckBox, u"Claude, primary"_s)->isChecked());
    QVERIFY(!kelvo_->find(Accessible::CheckBox, u"ChatGPT"_s)->isChecked());
}

void AccessibilityTest::aClosedPopoverIsNotInTheAccessibilityTree()
{
    QVERIFY(kelvo_->find(Accessible::Button, u"Settings"_s));
    Hand::press(u"Escape"_s);
    QTRY_VERIFY(!DesktopWindow::titled(u"Kelvo"_s));
    QTRY_VERIFY(!Accessible::program(kelvo_->processId())->find(Accessible::Button, u"Settings"_s));
}

} // namespace kelvo

QTEST_MAIN(kelvo::AccessibilityTest)
#include "tst_accessibility.moc"
