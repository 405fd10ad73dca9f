#include "menubar/popover/PopoverPlacement.h"

#include <QTest>

namespace kelvo {

class PopoverPlacementTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheRing_data();
    void findsTheRing();
    void isPlacedBesideTheRingInsideTheScreen_data();
    void isPlacedBesideTheRingInsideTheScreen();
    void findsTheNearestCorner_data();
    void findsTheNearestCorner();
    void findsTheEndOfThePanel_data();
    void findsTheEndOfThePanel();
};

namespace {

constexpr QRect screen(0, 0, 1000, 800);
constexpr QSize size(320, 300);

} // namespace

void PopoverPlacementTest::findsTheRing_data()
{
    QTest::addColumn<RingPlace>("ring");
    QTest::addColumn<std::optional<QPoint>>("pointer");
    QTest::addColumn<std::optional<QRect>>("expected");
    using Pointer = std::optional<QPoint>;
    using Anchor = std::optional<QRect>;
    constexpr QRect rectangle(500, 2, 24, 24);
    const Pointer atEdge(QPoint(700, 10));
    const Anchor atPointer(QRect(700, 10, 1, 1));
    const auto at = [](int x, int y) { return Anchor(QRect(x, y, 1, 1)); };

    QTest::newRow("its rectangle") << RingPlace{rectangle, QPoint(600, 10)} << atEdge << Anchor(rectangle);
    QTest::newRow("the point of the click") << RingPlace{{}, QPoint(600, 10)} << atEdge << at(600, 10);
    QTest::newRow("a point in the middle of the screen: a ring in a popup of the panel")
        << RingPlace{{}, QPoint(600, 400)} << Pointer() << at(600, 400);
    QTest::newRow("a point on the second screen") << RingPlace{{}, QPoint(1500, 10)} << Pointer() << at(1500, 10);
    QTest::newRow("a point relative to the item") << RingPlace{{}, QPoint(8, 14)} << Pointer() << Anchor();
    QTest::newRow("a point relative to the item, with the pointer at the ring")
        << RingPlace{{}, QPoint(0, 27)} << atEdge << atPointer;
    QTest::newRow("a point on no screen") << RingPlace{{}, QPoint(600, 900)} << Pointer() << Anchor();
    QTest::newRow("the pointer over the panel") << RingPlace{} << atEdge << atPointer;
    QTest::newRow("the pointer elsewhere, after a click with a key") << RingPlace{} << Pointer({500, 400}) << Anchor();
    QTest::newRow("the last point that may be relative to the item")
        << RingPlace{{}, QPoint(63, 63)} << Pointer() << Anchor();
    QTest::newRow("to the right of it") << RingPlace{{}, QPoint(64, 63)} << Pointer() << at(64, 63);
    QTest::newRow("below it") << RingPlace{{}, QPoint(63, 64)} << Pointer() << at(63, 64);
    QTest::newRow("the pointer over a panel at the left") << RingPlace{} << Pointer({63, 400}) << at(63, 400);
    QTest::newRow("beside it") << RingPlace{} << Pointer({64, 400}) << Anchor();
    QTest::newRow("the pointer over a panel at the bottom") << RingPlace{} << Pointer({500, 736}) << at(500, 736);
    QTest::newRow("above it") << RingPlace{} << Pointer({500, 735}) << Anchor();
    QTest::newRow("the pointer over a panel at the top") << RingPlace{} << Pointer({500, 63}) << at(500, 63);
    QTest::newRow("below the panel") << RingPlace{} << Pointer({500, 64}) << Anchor();
    QTest::newRow("the pointer over a panel at the right") << RingPlace{} << Pointer({1936, 400}) << at(1936, 400);
    QTest::newRow("to the left of it") << RingPlace{} << Pointer({1935, 400}) << Anchor();
    QTest::newRow("nothing") << RingPlace{} << Pointer() << Anchor();
}

void PopoverPlacementTest::findsTheRing()
{
    QFETCH(RingPlace, ring);
    QFETCH(std::optional<QPoint>, pointer);
    QFETCH(std::optional<QRect>, expected);
    constexpr QRect second(1000, 0, 1000, 800);
    QCOMPARE(PopoverPlacement::anchor(ring, pointer, {screen, second}), expected);
}

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
    QTest::newRow("above a panel at the bottom that the pointer is in")
        << QRect(500, 790, 1, 1) << abovePanel << QPoint(340, 454);
    QTest::newRow("below a ring in the middle of the screen")
        << QRect(500, 388, 24, 24) << QRect(0, 0, 1000, 800) << QPoint(351, 418);
    QTest::newRow("above a ring that is just below the middle")
        << QRect(500, 389, 24, 24) << QRect(0, 0, 1000, 800) << QPoint(351, 83);
    QTest::newRow("not beyond the top of a low screen")
        << QRect(500, 420, 24, 24) << QRect(0, 200, 1000, 600) << QPoint(351, 200);
    QTest::newRow("not beyond the bottom of a low screen")
        << QRect(500, 300, 24, 24) << QRect(0, 0, 1000, 600) << QPoint(351, 300);
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

void PopoverPlacementTest::findsTheNearestCorner_data()
{
    QTest::addColumn<QPoint>("anchor");
    QTest::addColumn<Qt::Edges>("expected");
    QTest::newRow("top left") << QPoint(100, 2) << (Qt::TopEdge | Qt::LeftEdge);
    QTest::newRow("top right") << QPoint(900, 2) << (Qt::TopEdge | Qt::RightEdge);
    QTest::newRow("bottom left") << QPoint(100, 790) << (Qt::BottomEdge | Qt::LeftEdge);
    QTest::newRow("bottom right") << QPoint(900, 790) << (Qt::BottomEdge | Qt::RightEdge);
    QTest::newRow("in the middle") << screen.center() << (Qt::TopEdge | Qt::LeftEdge);
    QTest::newRow("just beside it") << screen.center() + QPoint(1, 1) << (Qt::BottomEdge | Qt::RightEdge);
}

void PopoverPlacementTest::findsTheNearestCorner()
{
    QFETCH(QPoint, anchor);
    QFETCH(Qt::Edges, expected);
    QCOMPARE(PopoverPlacement::nearestCorner(QRect(anchor, QSize(1, 1)), screen), expected);
    // The shadow is cut off only at these edges.
    const auto room = PopoverPlacement::roomInCorner(expected);
    const auto isAsExpected = [expected](int points, Qt::Edge edge) {
        return expected.testFlag(edge) ? points == 6 : points > 100;
    };
    QVERIFY(isAsExpected(room.top(), Qt::TopEdge));
    QVERIFY(isAsExpected(room.bottom(), Qt::BottomEdge));
    QVERIFY(isAsExpected(room.left(), Qt::LeftEdge));
    QVERIFY(isAsExpected(room.right(), Qt::RightEdge));
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
    QTest::newRow("at the top, with a dock as high") << QRect(0, 28, 1000, 744) << QPoint(999, 0);
    QTest::newRow("at the top, with a dock as wide at the left") << QRect(28, 28, 972, 772) << QPoint(999, 0);
    QTest::newRow("at the left and as wide at the right") << QRect(60, 0, 880, 800) << QPoint(999, 799);
    QTest::newRow("at the left, wider than that at the top") << QRect(60, 28, 940, 772) << QPoint(0, 799);
}

void PopoverPlacementTest::findsTheEndOfThePanel()
{
    QFETCH(QRect, available);
    QFETCH(QPoint, expected);
    QCOMPARE(PopoverPlacement::panelCorner(screen, available), QRect(expected, QSize(0, 0)));
}

} // namespace kelvo

QTEST_APPLESS_MAIN(kelvo::PopoverPlacementTest)
#include "tst_popoverplacement.moc"
