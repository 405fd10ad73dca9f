#include "Backdrop.h"
#include "DesktopWindow.h"
#include "Hand.h"
#include "KelvoProcess.h"
#include "Screen.h"
#include "TrayItem.h"

#include "support/FakeLogind.h"

#include <QGuiApplication>
#include <QProcess>
#include <QScreen>
#include <QTest>

namespace kelvo {

using namespace Qt::StringLiterals;

/// The popover, operated by mouse and keyboard, in front of another application.
class PopoverTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void clicksOnTheRingOpenAndCloseIt();
    void aDoubleClickOnTheRingOpensIt();
    void aClickOnTheEmptyDesktopClosesIt();
    void itIsNotInTheTaskBar();
    void itIsEntirelyOnTheScreenBelowTheRing();
    void itsCornersShowWhatIsBehind();
    void openingItChecksAtOnce();
    void escapeClosesIt();
    void aClickOnAnotherWindowClosesIt();
    void aLockedScreenClosesIt();
    void startingTheProgramAgainOpensIt();
    void controlCommaOpensTheSettings();
    void theGearOpensTheSettingsInFrontOfAnotherWindow();
    void theTrayMenuOpensTheWindowsAndQuits();

private:
    static std::optional<DesktopWindow> popover() { return DesktopWindow::titled(u"Kelvo"_s); }
    /// The popover without its shadow.
    static QRect card();
    void open();
    void openSettingsByTheGear();
    qsizetype rounds() const { return internet_->requestsTo(u"status.claude.com"_s).size(); }

    PrivateBus systemBus_;
    std::unique_ptr<FakeLogind> logind_;
    std::unique_ptr<SimulatedInternet> internet_;
    std::unique_ptr<KelvoProcess> kelvo_;
    std::unique_ptr<Backdrop> backdrop_;
    QPoint ring_;
};

void PopoverTest::init()
{
    systemBus_.start();
    logind_ = std::make_unique<FakeLogind>(systemBus_);
    internet_ = std::make_unique<SimulatedInternet>();
    kelvo_ = std::make_unique<KelvoProcess>(*internet_);
    kelvo_->setEnvironment(u"DBUS_SYSTEM_BUS_ADDRESS"_s, systemBus_.address());
    kelvo_->writeSettings("[General]\nhasOnboarded=true\nenabledServices=claude, cursor\n");
    backdrop_ = std::make_unique<Backdrop>();
    backdrop_->open();
    // Move the pointer away, because the panel highlights the item under it.
    Hand::moveTo({100, 500});
    kelvo_->start();
    QTRY_VERIFY(Screen::findRing(RingState::available));
    ring_ = Screen::findRing(RingState::available)->center();
}

void PopoverTest::cleanup()
{
    kelvo_->endInSilence();
    kelvo_.reset();
    backdrop_.reset();
    logind_.reset();
    systemBus_.kill();
}

QRect PopoverTest::card()
{
    // The window includes the shadow: all of it on the left and below, and only as much as fits on the screen above and on
    // the right.
    const auto popover = PopoverTest::popover();
    return popover ? popover->geometry.adjusted(34, 6, -6, -44) : QRect();
}

void PopoverTest::open()
{
    Hand::click(ring_);
    QTRY_VERIFY(popover());
    QTRY_COMPARE(DesktopWindow::activeTitle(), u"Kelvo"_s);
    QTRY_COMPARE(card().top(), backdrop_->y() + 6);
    Hand::waitOutDoubleClick();
}

void PopoverTest::clicksOnTheRingOpenAndCloseIt()
{
    open();
    QTRY_COMPARE(rounds(), 2);
    Hand::click(ring_);
    QTRY_VERIFY(!popover());
    // The press has closed it. The panel reports the click later, and the next one must not be a double click with it.
    QTest::qWait(1500);
    // Every opening sends one request. If the click that closed the popover had opened it again, there would be one more.
    open();
    QTRY_COMPARE(rounds(), 3);
    Hand::click(ring_);
    QTRY_VERIFY(!popover());
    kelvo_->endInSilence();
    QCOMPARE(rounds(), 3);
}

void PopoverTest::aDoubleClickOnTheRingOpensIt()
{
    Hand::moveTo(ring_);
    QCOMPARE(QProcess::execute(u"xdotool"_s, {u"click"_s, u"--repeat"_s, u"2"_s, u"--delay"_s, u"60"_s, u"1"_s}), 0);
    QTRY_VERIFY(popover());
    QTest::qWait(1000); // nothing closes it afterwards
    QVERIFY(popover());
}

void PopoverTest::aClickOnTheEmptyDesktopClosesIt()
{
    open();
    backdrop_->hide();
    QVERIFY(popover()); // hiding the backdrop leaves the focus where it is
    Hand::click({100, 500});
    QTRY_VERIFY(!popover());
}

void PopoverTest::itIsNotInTheTaskBar()
{
    open();
    QProcess xprop;
    xprop.start(u"xprop"_s, {u"-id"_s, popover()->id, u"_NET_WM_STATE"_s});
    QVERIFY(xprop.waitForFinished());
    const auto states = xprop.readAll();
    QVERIFY2(states.contains("_NET_WM_STATE_SKIP_TASKBAR"), states);
    QVERIFY2(states.contains("_NET_WM_STATE_SKIP_PAGER"), states);
}

void PopoverTest::itIsEntirelyOnTheScreenBelowTheRing()
{
    open();
    const auto available = QGuiApplication::primaryScreen()->availableGeometry();
    QVERIFY(available.top() > 0);
    // The popover is below the ring, moved to the left so that it fits on the screen.
    QTRY_COMPARE(card().topRight(), available.topRight() + QPoint(-6, 6));
    QCOMPARE(card().width(), 320);
    QVERIFY(card().height() >= 260);
    QVERIFY(available.contains(popover()->geometry));
    QVERIFY(card().left() < ring_.x() && ring_.x() < card().right());
}

void PopoverTest::itsCornersShowWhatIsBehind()
{
    open();
    const auto card = this->card();
    const auto window = popover()->geometry;
    const auto shown = [](const QPoint &point) { return Screen::picture().pixelColor(point); };
    // The popover is drawn: the middle of the footer is grey.
    const auto ground = card.bottomLeft() + QPoint(160, -6);
    QTRY_COMPARE(shown(ground).red(), shown(ground).green());
    for (const auto &corner : {card.topLeft(), card.topRight(), card.bottomLeft(), card.bottomRight()}) {
        // The corner shows the window behind, darkened by the shadow.
        const auto color = shown(corner);
        QVERIFY2(color.green() < 8 && color.red() > 60 && color.red() == color.blue(), qPrintable(color.name()));
    }
    // The shadow fades away within the window.
    const auto edge = shown(window.bottomLeft() + QPoint(1, -1));
    QVERIFY2(edge.green() == 0 && edge.red() > Backdrop::color.red() - 8, qPrintable(edge.name()));
}

void PopoverTest::openingItChecksAtOnce()
{
    QCOMPARE(rounds(), 1);
    open();
    QTRY_COMPARE(rounds(), 2);
    QTRY_COMPARE(internet_->requestsTo(u"status.cursor.com"_s).size(), 2);
}

void PopoverTest::escapeClosesIt()
{
    open();
    Hand::press(u"Escape"_s);
    QTRY_VERIFY(!popover());
    open();
}

void PopoverTest::aClickOnAnotherWindowClosesIt()
{
    open();
    Hand::click(backdrop_->geometry().bottomLeft() + QPoint(50, -50));
    QTRY_VERIFY(!popover());
}

// Lock screens grab the keyboard, which leaves the focus where it is.
void PopoverTest::aLockedScreenClosesIt()
{
    open();
    logind_->lock();
    QTRY_VERIFY(!popover());
}

void PopoverTest::startingTheProgramAgainOpensIt()
{
    KelvoProcess::startAgain();
    QTRY_VERIFY(popover());
    QTRY_COMPARE(DesktopWindow::activeTitle(), u"Kelvo"_s);
    QTRY_COMPARE(card().topRight(), QGuiApplication::primaryScreen()->availableGeometry().topRight() + QPoint(-6, 6));
}

void PopoverTest::controlCommaOpensTheSettings()
{
    open();
    Hand::press(u"ctrl+comma"_s);
    QTRY_COMPARE(DesktopWindow::activeTitle(), u"Kelvo Settings"_s);
    QVERIFY(!popover());
    Hand::press(u"ctrl+w"_s);
    QTRY_VERIFY(!DesktopWindow::titled(u"Kelvo Settings"_s));
}

void PopoverTest::openSettingsByTheGear()
{
    open();
    // The button is 26 points wide, 12 points from the right edge, and centred in the footer, which is 38 points high.
    Hand::click(card().bottomRight() - QPoint(12 + 13, 38 / 2));
    QTRY_COMPARE(DesktopWindow::activeTitle(), u"Kelvo Settings"_s);
    QVERIFY(!popover());
}

void PopoverTest::theGearOpensTheSettingsInFrontOfAnotherWindow()
{
    openSettingsByTheGear();
    const auto seen = [] {
        return Screen::picture().pixelColor(DesktopWindow::titled(u"Kelvo Settings"_s)->geometry.topLeft()
                                            + QPoint(3, 3));
    };
    QTRY_VERIFY(seen() != Backdrop::color);

    // The window is already open behind the other one; it is brought to the front.
    backdrop_->raise();
    backdrop_->open();
    QTRY_COMPARE(seen(), Backdrop::color);
    openSettingsByTheGear();
    QTRY_VERIFY(seen() != Backdrop::color);
}

void PopoverTest::theTrayMenuOpensTheWindowsAndQuits()
{
    QCOMPARE(TrayItem::menu(), QStringList({u"Open Kelvo"_s, u"Settings…"_s, u"Quit Kelvo"_s}));
    TrayItem::choose(u"Open Kelvo"_s);
    QTRY_VERIFY(popover());
    TrayItem::choose(u"Settings…"_s);
    QTRY_COMPARE(DesktopWindow::activeTitle(), u"Kelvo Settings"_s);
    TrayItem::choose(u"Quit Kelvo"_s);
    QTRY_VERIFY(!kelvo_->isRunning());
}

} // namespace kelvo

QTEST_MAIN(kelvo::PopoverTest)
#include "tst_popover.moc"
