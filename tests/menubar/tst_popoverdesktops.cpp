#include "FakeDesktop.h"
#include "support/ViewScene.h"

#include "menubar/popover/PopoverPlacement.h"
#include "menubar/popover/PopoverWindow.h"

#include <QCursor>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

using WindowSystem::PopoverKind;

constexpr auto noGrab = "This plugin does not support grabbing the keyboard";

struct Program
{
    QQuickView &view() { return *popover.view(); }
    const PopoverFrameItem &frame() { return *qobject_cast<PopoverFrameItem *>(view().rootObject()); }
    /// After this time, the popover is no longer opened by the click that closed it, and closes for a press.
    void waitForClicks() { stores.clock.advance(401ms); }

    FakeAppearance appearance;
    ViewEngine engine{appearance};
    Stores stores{{ServiceID::claude, ServiceID::chatgpt}};
    PopoverWindow popover{stores.store, stores.settings, engine, stores.clock};
    RingPlace ring{QRect(300, 2, 24, 24), {}};
};

} // namespace

/// The window of the popover on desktops of each kind.
class PopoverDesktopsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void hasTheFlagsOfTheDesktop_data();
    void hasTheFlagsOfTheDesktop();
    void takesTheFocus_data();
    void takesTheFocus();
    void takesTheKeyboardWhereNobodyGivesIt();
    void isInTheCornerAtTheRing_data();
    void isInTheCornerAtTheRing();
    void anOrdinaryWindowHasOneSizeAndNoShadow();
    void tellsItsShadow();
    void hasNoShadowWithoutACompositor();
    void aPressElsewhereCloses();
    void aLockedScreenCloses();
    void aPressAtTheRingWaitsForTheClickOfABusyTray();
};

void PopoverDesktopsTest::hasTheFlagsOfTheDesktop_data()
{
    QTest::addColumn<PopoverKind>("kind");
    QTest::addColumn<Qt::WindowFlags>("flags");
    const Qt::WindowFlags bare = Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint;
    QTest::newRow("managed") << PopoverKind::managed << (bare | Qt::Tool);
    QTest::newRow("unmanaged") << PopoverKind::unmanaged << (bare | Qt::Window | Qt::BypassWindowManagerHint);
    QTest::newRow("layer") << PopoverKind::layer << (bare | Qt::Window);
    QTest::newRow("ordinary") << PopoverKind::ordinary
                              << Qt::WindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
}

void PopoverDesktopsTest::hasTheFlagsOfTheDesktop()
{
    QFETCH(const PopoverKind, kind);
    QFETCH(const Qt::WindowFlags, flags);
    FakeDesktop desktop;
    desktop.popoverKind = kind;
    Program program;
    if (kind == PopoverKind::unmanaged) {
        QTest::ignoreMessage(QtWarningMsg, noGrab); // when it opens
        QTest::ignoreMessage(QtWarningMsg, noGrab); // and closes
    }
    program.popover.toggle(program.ring);
    QCOMPARE(program.view().flags(), flags);
    QCOMPARE(desktop.popover, &program.view());
    program.popover.close();
}

void PopoverDesktopsTest::takesTheFocus_data()
{
    QTest::addColumn<PopoverKind>("kind");
    QTest::newRow("managed") << PopoverKind::managed;
    QTest::newRow("layer") << PopoverKind::layer;
    QTest::newRow("ordinary") << PopoverKind::ordinary;
}

void PopoverDesktopsTest::takesTheFocus()
{
    QFETCH(const PopoverKind, kind);
    FakeDesktop desktop;
    desktop.popoverKind = kind;
    Program program;
    program.popover.toggle(program.ring);
    QCOMPARE(desktop.activated, &program.view());
}

void PopoverDesktopsTest::takesTheKeyboardWhereNobodyGivesIt()
{
    FakeDesktop desktop;
    desktop.popoverKind = PopoverKind::unmanaged;
    Program program;
    QTest::ignoreMessage(QtWarningMsg, noGrab);
    program.popover.toggle(program.ring);
    QCOMPARE(desktop.activated, nullptr);
    QTest::ignoreMessage(QtWarningMsg, noGrab);
    program.popover.close();
}

void PopoverDesktopsTest::isInTheCornerAtTheRing_data()
{
    QTest::addColumn<Qt::Edges>("corner");
    QTest::newRow("top left") << Qt::Edges(Qt::TopEdge | Qt::LeftEdge);
    QTest::newRow("top right") << Qt::Edges(Qt::TopEdge | Qt::RightEdge);
    QTest::newRow("bottom left") << Qt::Edges(Qt::BottomEdge | Qt::LeftEdge);
    QTest::newRow("bottom right") << Qt::Edges(Qt::BottomEdge | Qt::RightEdge);
}

void PopoverDesktopsTest::isInTheCornerAtTheRing()
{
    QFETCH(const Qt::Edges, corner);
    FakeDesktop desktop;
    desktop.popoverKind = PopoverKind::layer;
    Program program;
    const auto screen = QGuiApplication::primaryScreen()->geometry();
    QRect ring(0, 0, 24, 24);
    ring.moveTopLeft({corner.testFlag(Qt::LeftEdge) ? 40 : screen.right() - 60,
                      corner.testFlag(Qt::TopEdge) ? 2 : screen.bottom() - 26});
    program.popover.toggle({ring, {}});
    QCOMPARE(desktop.corner, corner);

    const auto room = PopoverPlacement::roomInCorner(corner);
    QCOMPARE(program.frame().roomAbove(), room.top());
    QCOMPARE(program.frame().roomBelow(), room.bottom());
    QCOMPARE(program.frame().roomLeft(), room.left());
    QCOMPARE(program.frame().roomRight(), room.right());
    QCOMPARE(program.view().size(), program.frame().size().toSize());
    QCOMPARE(desktop.shadow, QMargins());
}

void PopoverDesktopsTest::anOrdinaryWindowHasOneSizeAndNoShadow()
{
    FakeDesktop desktop;
    desktop.popoverKind = PopoverKind::ordinary;
    Program program;
    program.popover.toggle(program.ring);
    QVERIFY(!program.frame().isTranslucent());
    QCOMPARE(desktop.shadow, QMargins());
    const auto size = program.view().size();
    QCOMPARE(size, program.frame().size().toSize());
    QCOMPARE(program.view().minimumSize(), size);
    QCOMPARE(program.view().maximumSize(), size);
}

void PopoverDesktopsTest::tellsItsShadow()
{
    FakeDesktop desktop;
    Program program;
    program.popover.toggle(program.ring);
    QVERIFY(program.frame().isTranslucent());
    QVERIFY(program.view().minimumSize().isEmpty());
    QVERIFY(desktop.shadow.bottom() > 0);
    QCOMPARE(QRect({}, program.view().size()).marginsRemoved(desktop.shadow), program.popover.card());
}

void PopoverDesktopsTest::hasNoShadowWithoutACompositor()
{
    FakeDesktop desktop;
    desktop.isCompositing = false;
    Program program;
    program.popover.toggle(program.ring);
    QVERIFY(!program.frame().isTranslucent());
    QCOMPARE(desktop.shadow, QMargins());
}

void PopoverDesktopsTest::aPressElsewhereCloses()
{
    FakeDesktop desktop;
    Program program;
    program.popover.toggle(program.ring);
    QVERIFY(!desktop.press()); // the second press of a double click
    program.waitForClicks();

    QCursor::setPos(program.view().geometry().center());
    QVERIFY(desktop.press());
    QVERIFY(program.popover.isOpen());

    const auto outside = program.ring.rectangle.topRight() + QPoint(17, 5);
    QVERIFY(!program.view().geometry().contains(outside));
    QCursor::setPos(outside);
    QVERIFY(desktop.press());
    QVERIFY(!program.popover.isOpen());
    QVERIFY(!desktop.press());
    program.waitForClicks();
    program.popover.toggle(program.ring);
    QVERIFY(program.popover.isOpen());
}

void PopoverDesktopsTest::aLockedScreenCloses()
{
    FakeDesktop desktop;
    Program program;
    program.popover.toggle(program.ring);
    QVERIFY(desktop.lock());
    QVERIFY(!program.popover.isOpen());
    QVERIFY(!desktop.lock());
}

void PopoverDesktopsTest::aPressAtTheRingWaitsForTheClickOfABusyTray()
{
    FakeDesktop desktop;
    Program program;
    program.popover.toggle(program.ring);
    program.waitForClicks();
    QCursor::setPos(program.ring.rectangle.topRight() + QPoint(16, 5));
    QVERIFY(desktop.press());
    QVERIFY(!program.popover.isOpen());
    program.stores.clock.advance(1999ms);
    program.popover.toggle(program.ring);
    QVERIFY(!program.popover.isOpen());
    program.popover.toggle(program.ring);
    QVERIFY(program.popover.isOpen());
}

} // namespace kelvo

QTEST_MAIN(kelvo::PopoverDesktopsTest)
#include "tst_popoverdesktops.moc"
