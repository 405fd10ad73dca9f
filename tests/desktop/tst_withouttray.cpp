#include "DesktopWindow.h"
#include "Hand.h"
#include "KelvoProcess.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

namespace kelvo {

using namespace Qt::StringLiterals;

/// A desktop without a tray, so without a ring.
class WithoutTrayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startingTheProgramAgainOpensThePopover();
};

void WithoutTrayTest::startingTheProgramAgainOpensThePopover()
{
    SimulatedInternet internet;
    KelvoProcess kelvo(internet);
    kelvo.writeSettings("[General]\nhasOnboarded=true\n");
    kelvo.start();
    QTRY_COMPARE(internet.requestsTo(u"status.claude.com"_s).size(), 1);
    QVERIFY(!DesktopWindow::titled(u"Kelvo"_s));

    KelvoProcess::startAgain();
    QTRY_COMPARE(DesktopWindow::activeTitle(), u"Kelvo"_s);
    const auto window = DesktopWindow::titled(u"Kelvo"_s);
    QVERIFY(window);
    QVERIFY(QGuiApplication::primaryScreen()->geometry().contains(window->geometry));
    QTRY_COMPARE(internet.requestsTo(u"status.claude.com"_s).size(), 2);

    Hand::press(u"ctrl+comma"_s);
    QTRY_COMPARE(DesktopWindow::activeTitle(), u"Kelvo Settings"_s);
    Hand::press(u"ctrl+q"_s);
    QTRY_VERIFY(!kelvo.isRunning());
    kelvo.endInSilence();
}

} // namespace kelvo

QTEST_MAIN(kelvo::WithoutTrayTest)
#include "tst_withouttray.moc"
