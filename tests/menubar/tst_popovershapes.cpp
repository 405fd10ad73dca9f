#include "support/Golden.h"
#include "support/QmlStage.h"

#include <QElapsedTimer>
#include <QTest>

#include <algorithm>

namespace kelvo {

namespace {

/// A white window with one shape of the popover.
class Stage : public QmlStage
{
public:
    explicit Stage(const QByteArray &shape, bool reduceMotion = false)
        : QmlStage(shape, {64, 64}, reduceMotion)
    {
    }

    void show()
    {
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
    }
    bool isBreathing() const { return item()->property("isBreathing").toBool(); }
};

} // namespace

class PopoverShapesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theGearHasOneColour();
    void theGearMatchesTheGoldenPicture();
    void theDotFadesToLessThanHalfAndBack();
    void theDotDoesNotPulsateWithReducedMotion();
    void aDotThatAppearsAgainStartsAtFullOpacity();
    void aHiddenDotDoesNotPulsate();
    void aDotFollowsItsWindow();
};

void PopoverShapesTest::theGearHasOneColour()
{
    Stage stage("GearSymbol { width: 64; height: 64; color: '#80000000' }");
    stage.show();
    const auto picture = stage.view.grabWindow();
    int darkest = 255;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            darkest = std::min(darkest, picture.pixelColor(x, y).value());
        }
    }
    QVERIFY2(qAbs(darkest - 127) <= 2, qPrintable(QString::number(darkest)));
}

void PopoverShapesTest::theGearMatchesTheGoldenPicture()
{
    QmlStage stage("GearSymbol { width: 256; height: 256; color: 'black' }", {256, 256});
    stage.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&stage.view));
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(stage.view.grabWindow(), QStringLiteral("gear")), QString());
}

void PopoverShapesTest::theDotFadesToLessThanHalfAndBack()
{
    Stage stage("BreathingDot { color: 'red' }");
    auto *dot = stage.item();
    QCOMPARE(dot->size(), QSizeF(5, 5));
    QCOMPARE(dot->opacity(), 1.0);
    stage.show();
    double least = 1;
    double largestJump = 0;
    double last = 1;
    int steps = 0;
    QElapsedTimer time;
    time.start();
    qint64 lastTime = 0;
    connect(dot, &QQuickItem::opacityChanged, dot, [&] {
        ++steps;
        least = std::min(least, dot->opacity());
        // At its steepest, the opacity changes by half in a second. After a late frame it may have changed by more.
        const auto step = time.elapsed() - lastTime;
        largestJump = std::max(largestJump, qAbs(dot->opacity() - last) - double(step) / 1000);
        last = dot->opacity();
        lastTime += step;
    });
    QTRY_VERIFY(dot->opacity() < 0.5);
    QTRY_VERIFY(dot->opacity() > 0.95);
    QTRY_VERIFY(dot->opacity() < 0.95);
    QVERIFY2(least > 0.449, qPrintable(QString::number(least)));
    // Each step is a frame, so there are only as many as it takes.
    QVERIFY2(steps * 50 < time.elapsed(), qPrintable(QString::number(steps)));
    QVERIFY2(largestJump < 0.1, qPrintable(QString::number(largestJump)));
}

void PopoverShapesTest::theDotDoesNotPulsateWithReducedMotion()
{
    Stage stage("BreathingDot { color: 'red' }", true);
    stage.show();
    QVERIFY(!stage.isBreathing());
    QCOMPARE(stage.item()->opacity(), 1.0);
    stage.appearance.setReduceMotion(false);
    QVERIFY(stage.isBreathing());
    QTRY_VERIFY(stage.item()->opacity() < 0.95);
    stage.appearance.setReduceMotion(true);
    QVERIFY(!stage.isBreathing());
    QCOMPARE(stage.item()->opacity(), 1.0);
}

void PopoverShapesTest::aDotThatAppearsAgainStartsAtFullOpacity()
{
    Stage stage("BreathingDot { color: 'red' }");
    QVERIFY(!stage.isBreathing());
    stage.show();
    QVERIFY(stage.isBreathing());
    QTRY_VERIFY(stage.item()->opacity() < 0.95);
    stage.view.hide();
    QVERIFY(!stage.isBreathing());
    QCOMPARE(stage.item()->opacity(), 1.0);
}

void PopoverShapesTest::aHiddenDotDoesNotPulsate()
{
    Stage stage("BreathingDot { color: 'red' }");
    stage.show();
    QVERIFY(stage.isBreathing());
    stage.item()->setVisible(false);
    QVERIFY(!stage.isBreathing());
    stage.item()->setVisible(true);
    QVERIFY(stage.isBreathing());
}

void PopoverShapesTest::aDotFollowsItsWindow()
{
    Stage stage("BreathingDot { color: 'red' }");
    stage.show();
    auto *dot = stage.item();
    const auto isBreathing = [dot] { return dot->property("isBreathing").toBool(); };
    QVERIFY(isBreathing());
    QQuickWindow hidden;
    dot->setParentItem(hidden.contentItem());
    QVERIFY(!isBreathing());
    // The window that it has left does not matter.
    stage.view.hide();
    stage.show();
    QVERIFY(!isBreathing());
    hidden.show();
    QVERIFY(QTest::qWaitForWindowExposed(&hidden));
    QVERIFY(isBreathing());
    dot->setParentItem(nullptr);
    QVERIFY(!isBreathing());
    delete dot;
}

} // namespace kelvo

QTEST_MAIN(kelvo::PopoverShapesTest)
#include "tst_popovershapes.moc"
