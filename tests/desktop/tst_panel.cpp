#include "DesktopWindow.h"
#include "Hand.h"
#include "KelvoProcess.h"
#include "Screen.h"

#include <QProcess>
#include <QScopeGuard>
#include <QTest>

#include <csignal>

namespace kelvo {

using namespace Qt::StringLiterals;

/// The ring in a panel that starts and stops at any time.
class PanelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void theRingAppearsInARunningPanel();
    void theRingAppearsWhenThePanelStartsLater();
    void theRingAppearsAgainAfterThePanelRestarts();
    void aClickThatABusyTrayReportsLateDoesNotOpenThePopoverAgain();
    void anInactiveRingIsHollowAndDim();

private:
    void startPanel();
    void signalTray(int signal) const;
    void stopPanel();

    SimulatedInternet internet_;
    std::unique_ptr<KelvoProcess> kelvo_;
    std::unique_ptr<QProcess> panel_;
};

void PanelTest::init()
{
    internet_.setOffline(false);
    kelvo_ = std::make_unique<KelvoProcess>(internet_);
}

void PanelTest::cleanup()
{
    kelvo_.reset();
    if (panel_) {
        stopPanel();
    }
}

void PanelTest::startPanel()
{
    panel_ = std::make_unique<QProcess>();
    panel_->setProcessChannelMode(QProcess::MergedChannels);
    panel_->start(u"xfce4-panel"_s, {u"--sm-client-disable"_s});
    QVERIFY(panel_->waitForStarted());
    const QStringList ask{u"--session"_s,
                          u"--print-reply=literal"_s,
                          u"--dest=org.kde.StatusNotifierWatcher"_s,
                          u"/StatusNotifierWatcher"_s,
                          u"org.freedesktop.DBus.Properties.Get"_s,
                          u"string:org.kde.StatusNotifierWatcher"_s,
                          u"string:IsStatusNotifierHostRegistered"_s};
    const auto hasTray = [&ask] {
        QProcess bus;
        bus.start(u"dbus-send"_s, ask);
        bus.waitForFinished();
        return bus.readAllStandardOutput().trimmed().endsWith("true");
    };
    QTRY_VERIFY(hasTray());
}

void PanelTest::stopPanel()
{
    panel_->terminate();
    QVERIFY(panel_->waitForFinished());
    panel_.reset();
}

/// Sends a signal to the plugin with the tray, which is the only child of the panel.
void PanelTest::signalTray(int signal) const
{
    const auto id = panel_->processId();
    QFile children(u"/proc/%1/task/%1/children"_s.arg(id));
    QVERIFY(children.open(QIODevice::ReadOnly));
    const auto tray = children.readAll().trimmed().toInt();
    QVERIFY(tray > 0);
    QCOMPARE(::kill(tray, signal), 0);
}

void PanelTest::theRingAppearsInARunningPanel()
{
    startPanel();
    kelvo_->start();
    QTRY_VERIFY(Screen::findRing(RingState::available));
}

void PanelTest::theRingAppearsWhenThePanelStartsLater()
{
    kelvo_->start();
    // The first request has been sent, so the program has already looked for a tray.
    QTRY_VERIFY(!internet_.requestsTo(u"status.claude.com"_s).isEmpty());
    QVERIFY(!Screen::findRing(RingState::available));
    startPanel();
    QTRY_VERIFY(Screen::findRing(RingState::available));
}

void PanelTest::theRingAppearsAgainAfterThePanelRestarts()
{
    startPanel();
    kelvo_->start();
    QTRY_VERIFY(Screen::findRing(RingState::available));
    stopPanel();
    QTRY_VERIFY(!Screen::findRing(RingState::available));
    startPanel();
    QTRY_VERIFY(Screen::findRing(RingState::available));
}

void PanelTest::aClickThatABusyTrayReportsLateDoesNotOpenThePopoverAgain()
{
    startPanel();
    kelvo_->writeSettings("[General]\nhasOnboarded=true\n");
    kelvo_->start();
    QTRY_VERIFY(Screen::findRing(RingState::available));
    const auto ring = Screen::findRing(RingState::available)->center();
    const auto isOpen = [] { return DesktopWindow::titled(u"Kelvo"_s).has_value(); };
    Hand::click(ring);
    QTRY_VERIFY(isOpen());
    Hand::waitOutDoubleClick();

    signalTray(SIGSTOP);
    const auto goOn = qScopeGuard([this] { signalTray(SIGCONT); });
    Hand::click(ring); // the press closes it
    QTRY_VERIFY(!isOpen());
    QTest::qWait(700);
    signalTray(SIGCONT);
    QTest::qWait(1500);
    QVERIFY(!isOpen());
}

void PanelTest::anInactiveRingIsHollowAndDim()
{
    internet_.setOffline(true);
    startPanel();
    const auto before = Screen::picture();
    kelvo_->start();
    // The first change need not be the whole ring, nor the ring at all: a tray may show the place of an item first.
    const auto isHollowAndDim = [&] {
        const auto ring = Screen::barChangeSince(before);
        if (ring.width() <= 8 || std::abs(ring.width() - ring.height()) > 1) {
            return false;
        }
        const auto picture = Screen::picture();
        const auto bare = qGray(before.pixel(ring.center()));
        int brightest = 0;
        for (int y = ring.top(); y <= ring.bottom(); ++y) {
            for (int x = ring.left(); x <= ring.right(); ++x) {
                brightest = std::max(brightest, qGray(picture.pixel(x, y)));
            }
        }
        const int dim = bare + (255 - bare) * 45 / 100; // white at 45 % over the bar
        return std::abs(qGray(picture.pixel(ring.center())) - bare) <= 8 && std::abs(brightest - dim) <= 12;
    };
    QTRY_VERIFY(isHollowAndDim());
}

} // namespace kelvo

QTEST_MAIN(kelvo::PanelTest)
#include "tst_panel.moc"
