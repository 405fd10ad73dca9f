#include "style/DevicePixels.h"
#include "style/LineSymbol.h"
#include "support/Golden.h"
#include "support/QmlStage.h"

#include <QAccessible>
#include <QSGRenderNode>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// A white window with one shape.
class Stage : public QmlStage
{
public:
    explicit Stage(const QByteArray &shape)
        : QmlStage(shape, {64, 64})
    {
    }

    QQuickItem *shape() const { return item(); }
    void show()
    {
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
    }
};

} // namespace

class ShapesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDotIsRound();
    void theRingHasItsGapJustAnticlockwiseOfTwelve();
    void theMarkFillsItsSizeWithTheRingAndHasADot();
    void theMarkIsNotInTheAccessibilityTree();
    void aRingFollowsItsProperties();
    void aShadowFollowsItsProperties();
    void aShadowIsDrawnAroundCornersThatHardlyFit();
    void aShadowIsSymmetric();
    void aShadowCanBeThin();
    void aThinBorderIsOnePixelWide();
    void theSymbolsMatchTheGoldenPicture();
    void aSymbolIsPaintedAgainWhenItsLookChanges();
    void nothingButItsOwnRectangleIsShownAgain();
    void theBellIsSymmetric();
    void endsOfANarrowRectangleAreHalfCircles();
    void rectanglesCoverWholeDevicePixels_data();
    void rectanglesCoverWholeDevicePixels();
    void aShapeWithoutRoomDrawsNothing_data();
    void aShapeWithoutRoomDrawsNothing();
};

void ShapesTest::aDotIsRound()
{
    Stage stage("StatusDot { width: 7; height: 7; color: 'black' }");
    stage.show();
    const auto picture = stage.view.grabWindow();
    QCOMPARE(picture.pixelColor(3, 3), QColor(Qt::black));
    QCOMPARE(picture.pixelColor(0, 3).value(), picture.pixelColor(3, 0).value());
    QVERIFY(picture.pixelColor(3, 0).value() < 100); // the dot reaches the edge
    QVERIFY(picture.pixelColor(0, 0).value() > 220); // the corner is empty
    QVERIFY(picture.pixelColor(1, 0).value() > picture.pixelColor(3, 0).value());
}

void ShapesTest::theRingHasItsGapJustAnticlockwiseOfTwelve()
{
    Stage stage("GappedRing { width: 64; height: 64; inset: 4; lineWidth: 4; color: 'black' }");
    stage.show();
    const auto picture = stage.view.grabWindow();
    const auto at = [&picture](double degreesAnticlockwiseOfTwelve) {
        const auto angle = qDegreesToRadians(90 + degreesAnticlockwiseOfTwelve);
        return picture.pixelColor(qRound(31.5 + 28 * std::cos(angle)), qRound(31.5 - 28 * std::sin(angle)));
    };
    QCOMPARE(at(13.2), QColor(Qt::white));
    QCOMPARE(at(-5), QColor(Qt::black));
    QCOMPARE(at(31), QColor(Qt::black));
    QCOMPARE(at(180), QColor(Qt::black));
}

void ShapesTest::theMarkFillsItsSizeWithTheRingAndHasADot()
{
    Stage stage("KelvoMark { x: 8; y: 8; size: 48; coreColor: '#32D74B' }");
    QCOMPARE(stage.shape()->width(), 48.0);
    const auto parts = stage.shape()->childItems();
    QCOMPARE(parts.at(0)->property("lineWidth").toReal(), 48 * 2.1 / 32);
    QCOMPARE(parts.at(0)->width() - 2 * parts.at(0)->property("inset").toReal(), 48.0);
    auto ring = QColor(Qt::black);
    ring.setAlphaF(0.72F);
    QCOMPARE(parts.at(0)->property("color").value<QColor>(), ring);
    QCOMPARE(parts.at(1)->width(), 48 * 8.2 / 32);
    QCOMPARE(parts.at(1)->property("color").value<QColor>(), QColor(0x32d74b));
    stage.show();
    const auto picture = stage.view.grabWindow();
    QCOMPARE(picture.pixelColor(32, 32), QColor(0x32d74b));
    QVERIFY(picture.pixelColor(32, 7).value() < 120); // the outer half of the line is outside of the frame
}

void ShapesTest::theMarkIsNotInTheAccessibilityTree()
{
    Stage stage("KelvoMark { size: 48; coreColor: 'red' }");
    stage.show();
    QCOMPARE(QAccessible::queryAccessibleInterface(&stage.view)->childCount(), 0);
}

void ShapesTest::aRingFollowsItsProperties()
{
    Stage stage("GappedRing { width: 64; height: 64; inset: 4; lineWidth: 4; color: 'black' }");
    stage.show();
    const auto atThree = [&stage](int fromEdge) { return stage.view.grabWindow().pixelColor(63 - fromEdge, 32); };
    QCOMPARE(atThree(4), QColor(Qt::black));
    QCOMPARE(atThree(10), QColor(Qt::white));
    const QSignalSpy insets(stage.shape(), SIGNAL(insetChanged()));
    stage.shape()->setProperty("inset", 10);
    QCOMPARE(insets.count(), 1);
    QCOMPARE(atThree(4), QColor(Qt::white));
    QCOMPARE(atThree(10), QColor(Qt::black));
    stage.shape()->setProperty("lineWidth", 16);
    QCOMPARE(atThree(4), QColor(Qt::black));
    stage.shape()->setProperty("color", QColor(Qt::red));
    QCOMPARE(atThree(4), QColor(Qt::red));
}

void ShapesTest::aShadowFollowsItsProperties()
{
    Stage stage("WindowShadow { width: 64; height: 64; blur: 5; color: 'black' }");
    stage.show();
    const auto at = [&stage](int x, int y) { return stage.view.grabWindow().pixelColor(x, y); };
    QVERIFY(at(32, 32).lightness() < 16);
    const auto nearEdge = at(8, 32).lightness();
    stage.shape()->setProperty("blur", 10);
    QVERIFY(at(8, 32).lightness() > nearEdge);
    stage.shape()->setProperty("color", QColor(Qt::red));
    QVERIFY(at(32, 32).red() > 240 && at(32, 32).green() < 16);
}

void ShapesTest::aShadowIsDrawnAroundCornersThatHardlyFit()
{
    Stage stage("WindowShadow { x: 20; y: 20; width: 21; height: 21; blur: 5; color: 'black' }");
    stage.show();
    QVERIFY(stage.view.grabWindow().pixelColor(30, 30).lightness() < 32);
}

void ShapesTest::aShadowIsSymmetric()
{
    Stage stage("WindowShadow { width: 64; height: 64; blur: 5; color: 'black' }");
    stage.show();
    const auto picture = stage.view.grabWindow();
    QVERIFY(picture.pixelColor(32, 32).lightness() - picture.pixelColor(32, 2).lightness() < -200);
    QCOMPARE(picture.mirrored(true, false), picture);
    QCOMPARE(picture.mirrored(false, true), picture);
}

void ShapesTest::aShadowCanBeThin()
{
    Stage stage("WindowShadow { x: 20; y: 20; width: 20; height: 20; blur: 1; color: 'black' }");
    stage.show();
    QVERIFY(stage.view.grabWindow().pixelColor(30, 30).lightness() < 16);
}

void ShapesTest::aThinBorderIsOnePixelWide()
{
    Stage stage("RoundedRectangle { x: 20; y: 20; width: 20; height: 20; border.color: 'black'; border.width: 0.3 }");
    stage.show();
    const auto picture = stage.view.grabWindow();
    QCOMPARE(picture.pixelColor(20, 30), QColor(Qt::black));
    QCOMPARE(picture.pixelColor(21, 30), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(39, 30), QColor(Qt::black));
}

void ShapesTest::theSymbolsMatchTheGoldenPicture()
{
    QmlStage stage("Row { Repeater { model: [LineSymbol.Bell, LineSymbol.Check, LineSymbol.CheckInCircle,"
                   "                         LineSymbol.Grip, LineSymbol.Info]\n"
                   "    LineSymbol { required property int modelData; shape: modelData; lineWidth: 8; color: 'black'\n"
                   "                 width: 192; height: 192 } } }",
                   {960, 192});
    stage.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&stage.view));
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(stage.view.grabWindow(), u"symbols"_s), QString());
}

void ShapesTest::aSymbolIsPaintedAgainWhenItsLookChanges()
{
    QmlStage stage("LineSymbol { shape: LineSymbol.Bell; lineWidth: 2; width: 48; height: 48 }", {48, 48});
    stage.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&stage.view));
    const auto bell = stage.view.grabWindow();
    stage.item()->setProperty("shape", LineSymbol::Check);
    const auto check = stage.view.grabWindow();
    QVERIFY(check != bell);
    stage.item()->setProperty("lineWidth", 4);
    QVERIFY(stage.view.grabWindow() != check);
}

void ShapesTest::nothingButItsOwnRectangleIsShownAgain()
{
    // Without the flag, the renderer hands the whole window to the desktop when one symbol has changed.
    class Symbol : public LineSymbol
    {
    public:
        using LineSymbol::updatePaintNode;
    } symbol;
    symbol.setSize({24, 12});
    const std::unique_ptr<QSGNode> node(symbol.updatePaintNode(nullptr, nullptr));
    const auto *painting = dynamic_cast<const QSGRenderNode *>(node.get());
    QVERIFY(painting);
    QVERIFY(painting->flags().testFlag(QSGRenderNode::BoundedRectRendering));
    QCOMPARE(painting->rect(), QRectF(0, 0, 24, 12));
}

void ShapesTest::theBellIsSymmetric()
{
    QmlStage stage("LineSymbol { shape: LineSymbol.Bell; lineWidth: 8; color: 'black'; width: 192; height: 192 }",
                   {192, 192});
    stage.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&stage.view));
    const auto picture = stage.view.grabWindow();
    QVERIFY(picture.pixelColor(192 / 2, 3 * 192 / 24).value() < 10); // at the top
    int largest = 0;
    for (int y = 0; y < 192; ++y) {
        for (int x = 0; x < 192 / 2; ++x) {
            largest = std::max(largest,
                               qAbs(picture.pixelColor(x, y).value() - picture.pixelColor(191 - x, y).value()));
        }
    }
    QVERIFY2(largest < 16, qPrintable(QString::number(largest)));
}

void ShapesTest::endsOfANarrowRectangleAreHalfCircles()
{
    Stage upright("RoundedRectangle { x: 20; y: 20; width: 10; height: 40; radius: 100; color: 'black' }");
    Stage lying("RoundedRectangle { x: 20; y: 20; width: 40; height: 10; radius: 100; color: 'black' }");
    upright.show();
    lying.show();
    const auto high = upright.view.grabWindow();
    const auto wide = lying.view.grabWindow();
    // At this distance from the end, the edge of a circle with the radius 5 is between 1 and 2.
    QCOMPARE(high.pixelColor(20, 21), QColor(Qt::white));
    QVERIFY(high.pixelColor(22, 21).value() < 16);
    QCOMPARE(wide.pixelColor(21, 20), QColor(Qt::white));
    QVERIFY(wide.pixelColor(21, 22).value() < 16);
}

void ShapesTest::rectanglesCoverWholeDevicePixels_data()
{
    QTest::addColumn<QRectF>("rectangle");
    QTest::addColumn<QRectF>("pixels");
    QTest::newRow("whole") << QRectF(1, 2, 3, 4) << QRectF(1, 2, 3, 4);
    QTest::newRow("halves") << QRectF(0.5, -0.5, 10, 10) << QRectF(1, 0, 10, 10);
    QTest::newRow("both edges") << QRectF(0.4, 0.6, 10.2, 10) << QRectF(0, 1, 11, 10);
    QTest::newRow("a line is as thick everywhere") << QRectF(0.4, 0.6, 2.2, 4.4) << QRectF(0, 1, 2, 4);
    QTest::newRow("the thickest line") << QRectF(0.4, 0.4, 4.49, 4.5) << QRectF(0, 0, 4, 5);
    QTest::newRow("a thin line") << QRectF(0, 0, 0.3, 10) << QRectF(0, 0, 1, 10);
}

void ShapesTest::rectanglesCoverWholeDevicePixels()
{
    QFETCH(const QRectF, rectangle);
    QTEST(onDevicePixels(rectangle), "pixels");
}

void ShapesTest::aShapeWithoutRoomDrawsNothing_data()
{
    QTest::addColumn<QByteArray>("shape");
    QTest::newRow("an empty rectangle") << QByteArray(
        "RoundedRectangle { x: 20.3; y: 20.3; width: 20; color: 'black'; border.color: 'black'; border.width: 1 }");
    QTest::newRow("a shadow without a blur")
        << QByteArray("WindowShadow { x: 20; y: 20; width: 20; height: 20; color: 'black' }");
    QTest::newRow("a shadow that is narrower than its corners")
        << QByteArray("WindowShadow { x: 20; width: 20; height: 60; blur: 5; color: 'black' }");
    QTest::newRow("a shadow that is lower than its corners")
        << QByteArray("WindowShadow { y: 20; width: 60; height: 20; blur: 5; color: 'black' }");
}

void ShapesTest::aShapeWithoutRoomDrawsNothing()
{
    QFETCH(const QByteArray, shape);
    Stage stage(shape);
    stage.show();
    auto empty = stage.view.grabWindow();
    const auto drawn = empty;
    empty.fill(Qt::white);
    QCOMPARE(drawn, empty);
}

} // namespace kelvo

QTEST_MAIN(kelvo::ShapesTest)
#include "tst_shapes.moc"
