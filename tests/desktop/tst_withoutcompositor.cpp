#include "Backdrop.h"
#include "DesktopWindow.h"
#include "Hand.h"
#include "KelvoProcess.h"
#include "Screen.h"

#include <QTest>

namespace kelvo {

using namespace Qt::StringLiterals;

/// A desktop without a compositor, on which transparent pixels are drawn black.
class WithoutCompositorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePopoverIsAFramedRectangle();
};

void WithoutCompositorTest::thePopoverIsAFramedRectangle()
{
    SimulatedInternet internet;
    KelvoProcess kelvo(internet);
    kelvo.writeSettings("[General]\nhasOnboarded=true\n");
    Backdrop backdrop;
    backdrop.open();
    kelvo.start();
    QTRY_VERIFY(Screen::findRing(RingState::available));
    Hand::click(Screen::findRing(RingState::available)->center());
    const auto top = [] {
        const auto popover = DesktopWindow::titled(u"Kelvo"_s);
        return popover ? popover->geometry.top() : -1;
    };
    QTRY_COMPARE(top(), backdrop.y() + 6 - 1);
    const auto window = DesktopWindow::titled(u"Kelvo"_s)->geometry;
    QCOMPARE(window.width(), 1 + 320 + 1);
    // Check all pixels in one picture, because the window may be repainted between two pictures.
    const auto isFramed = [window] {
        const auto picture = Screen::picture();
        const auto frame = picture.pixelColor(window.topLeft());
        const auto ground = picture.pixelColor(window.bottomLeft() + QPoint(160, -7));
        const bool isAllFrame = picture.pixelColor(window.topRight()) == frame
            && picture.pixelColor(window.bottomLeft()) == frame && picture.pixelColor(window.bottomRight()) == frame
            && picture.pixelColor(window.center().x(), window.top()) == frame
            && picture.pixelColor(window.left(), window.center().y()) == frame;
        return isAllFrame && frame != ground && frame != QColor(Qt::black) && frame != Backdrop::color
            && picture.pixelColor(window.topLeft() + QPoint(1, 1)) == ground;
    };
    QTRY_VERIFY(isFramed());
    for (const auto &outside : {window.bottomLeft() + QPoint(-1, 1), window.bottomRight() + QPoint(1, 1),
                                window.topLeft() - QPoint(1, 0), window.topRight() + QPoint(1, 0)}) {
        QCOMPARE(Screen::picture().pixelColor(outside), Backdrop::color);
    }
    kelvo.endInSilence();
}

} // namespace kelvo

QTEST_MAIN(kelvo::WithoutCompositorTest)
#include "tst_withoutcompositor.moc"
