#include "support/QmlStage.h"

#include <QTest>

namespace kelvo {

namespace {

/// A white window with a bar of 40 × 20 points in its middle.
class Stage : public QmlStage
{
public:
    explicit Stage(const QByteArray &look)
        : QmlStage("PillShape { x: 12; y: 22; width: 40; height: 20; color: 'white'; " + look + " }", {64, 64})
    {
        view.show();
        if (!QTest::qWaitForWindowExposed(&view)) {
            qFatal("The window did not appear");
        }
    }

    QColor at(QPoint point) { return view.grabWindow().pixelColor(point); }
};

constexpr QPoint topEdge{32, 22};
constexpr QPoint middle{32, 32};
constexpr QPoint corner{12, 22};

} // namespace

class PillShapeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itsEndsAreRound()
    {
        Stage stage("lineColor: 'black'; lineWidth: 2");
        QCOMPARE(stage.at(topEdge), QColor(Qt::black));
        QCOMPARE(stage.at(middle), QColor(Qt::white));
        QCOMPARE(stage.at(corner), QColor(Qt::white));
        // At the middle of its end, the line is as far out as the item.
        QVERIFY(stage.at({12, 32}).lightness() < 32);
    }

    void aLineWithoutAWidthIsNotDrawn()
    {
        Stage stage("lineColor: 'black'");
        QCOMPARE(stage.at(topEdge), QColor(Qt::white));
    }

    void followsChangesOfItsLine()
    {
        Stage stage("lineColor: 'black'");
        QCOMPARE(stage.at(topEdge), QColor(Qt::white));
        stage.item()->setProperty("lineWidth", 2);
        QCOMPARE(stage.at(topEdge), QColor(Qt::black));
        stage.item()->setProperty("lineColor", QColor(Qt::red));
        QCOMPARE(stage.at(topEdge), QColor(Qt::red));
    }
};

} // namespace kelvo

QTEST_MAIN(kelvo::PillShapeTest)
#include "tst_pillshape.moc"
