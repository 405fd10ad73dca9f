#include "menubar/popover/PopoverPlacement.h"

#include <QTest>

namespace kelvo {

class PopoverPlacementTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isPlacedBesideTheRingInsideTheScreen_data();
    void isPlacedBesideTheRingInsideTheScreen();
    void findsTheEndOfThePanel_data();
    void findsTheEndOfThePanel();
};

namespace {

constexpr QRect screen(0, 0, 1000, 800);
constexpr QSize size(320, 300);

} // namespace

void PopoverPlacementTest::isPlacedBesideTheRingInsideTheScreen_data()
{
    QTest::addColumn<QRect>("anchor");
    QTest::addColumn<QRect>("available");
    QTest::addColumn<QPoint>("expected");
    const QRect belowPanel(0, 28, 1000, 772);
    const QRect abovePanel(0, 0, 1000, 760);
    QTest::newRow("below a ring in a panel at the top") << QRect(500, 2, 24, 24) << belowPanel << QPoint(351, 34);
    QTest::newRow("above a ring in a panel at the bottom") << QRect(500, 768, 24, 24) << abovePanel << QPoint(351, 454);
    QTest::newRow("kept in at the right") << QRect(970, 2, 24, 24) << belowPanel << QPoint(674, 34);
    QTest::newRow("kept in at the left") << QRect(2, 2, 24, 24) << belowPanel << QPoint(6, 34);
    QTest::newRow("clear of the panel that the pointer is in") << QRect(500, 5, 1, 1) << belowPanel << QPoint(340, 34);
    QTest::newRow("beside a panel at the left") << QRect(10, 700, 24, 24) << QRect(48, 0, 952, 800) << QPoint(54, 394);
    QTest::newRow("top left visible on a tiny screen")
        << QRect(10, 2, 24, 24) << QRect(0, 28, 200, 100) << QPoint(6, 28);
}

void PopoverPlacementTest::isPlacedBesideTheRingInsideTheScreen()
{
    QFETCH(QRect, anchor);
    QFETCH(QRect, available);
    QFETCH(QPoint, expected);
    QCOMPARE(PopoverPlacement::beside(anchor, size, screen, available), expected);
}

void PopoverPlacementTest::findsTheEndOfThePanel_data()
{
    QTest::addColumn<QRect>("available");
    QTest::addColumn<QPoint>("expected");
    QTest::newRow("at the top") << QRect(0, 28, 1000, 772) << QPoint(999, 0);
    QTest::newRow("at the bottom") << QRect(0, 0, 1000, 760) << QPoint(999, 799);
    QTest::newRow("at the left") << QRect(60, 0, 940, 800) << QPoint(0, 799);
    QTest::newRow("at the right") << QRect(0, 0, 940, 800) << QPoint(999, 799);
    QTest::newRow("nowhere") << screen << QPoint(999, 0);
    QTest::newRow("at the top, with a dock at the bottom") << QRect(0, 28, 1000, 762) << QPoint(999, 0);
}

void PopoverPlacementTest::findsTheEndOfThePanel()
{
    QFETCH(QRect, available);
    QFETCH(QPoint, expected);
    QCOMPARE(PopoverPlacement::panelCorner(screen, available).topLeft(), expected);
}

} // namespace kelvo

QTEST_APPLESS_MAIN(kelvo::PopoverPlacementTest)
#include "tst_popoverplacement.moc"
