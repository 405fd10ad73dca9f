#include "support/BrokenView.h"
#include "support/ViewScene.h"

#include "menubar/popover/PopoverWindow.h"

#include <QApplication>
#include <QQuickItem>
#include <QRegularExpression>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryFile>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

struct Desktop
{
    /// The rectangle of the popover without its shadow, on the screen.
    QRect card() const { return popover.card().translated(popover.view()->position()); }

    FakeAppearance appearance;
    ViewEngine engine{appearance};
    Stores stores{{ServiceID::claude, ServiceID::chatgpt}};
    PopoverWindow popover{stores.store, stores.settings, engine, stores.clock};
    RingPlace ring{QRect(300, 2, 24, 24), {}};
};

/// A window that takes the focus, like that of another program.
struct Elsewhere
{
    Elsewhere()
    {
        window.show();
        window.requestActivate();
        if (!QTest::qWaitForWindowActive(&window)) {
            qFatal("The window did not become active");
        }
    }

    QWindow window;
};

/// Counts the presses that reach it as an event filter. Those of the Ctrl key do not count.
class Presses : public QObject
{
public:
    int count = 0;

private:
    bool eventFilter(QObject *, QEvent *event) override
    {
        const bool isKey = event->type() == QEvent::KeyPress
            && static_cast<const QKeyEvent *>(event)->key() != Qt::Key_Control;
        count += isKey || event->type() == QEvent::MouseButtonPress ? 1 : 0;
        return false;
    }
};

} // namespace

class PopoverWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void viewsAreLoadedAtTheFirstOpening();
    void aViewThatCannotBeLoadedOpensNoPopover();
    void aClickOpensAndAClickCloses();
    void opensBesideTheRingInsideTheScreen();
    void opensInsideTheScreenWhenThePlaceOfTheRingIsUnknown();
    void staysInsideTheScreenWhenItGrows();
    void openingAnOpenPopoverKeepsIt();
    void escapeCloses();
    void controlWCloses();
    void controlQQuits();
    void controlCommaRequestsTheSettings();
    void whatClosesItGoesNoFurther_data();
    void whatClosesItGoesNoFurther();
    void opensAtThePointOfTheClickOnItsScreen();
    void losingTheFocusCloses();
    void theClickThatTookTheFocusDoesNotReopen();
    void aLaterClickReopens();
    void requestingTheSettingsCloses();
    void aCloseByTheDesktopCountsAsClosed();
    void aPressOnTheShadowCloses();
    void aPressOnThePopoverDoesNotCloseIt();
    void isATranslucentWindowWithoutAFrame();
    void isNotUnloadedWhileItIsOpen();
    void nothingIsPendingWhileClosed();
    void hasRoundCornersInAShadow_data();
    void hasRoundCornersInAShadow();
};

void PopoverWindowTest::viewsAreLoadedAtTheFirstOpening()
{
    Desktop desktop;
    QVERIFY(!desktop.popover.view());
    desktop.popover.toggle(desktop.ring);
    QVERIFY(desktop.popover.view());
    QCOMPARE(desktop.popover.view()->status(), QQuickView::Ready);
}

void PopoverWindowTest::aViewThatCannotBeLoadedOpensNoPopover()
{
    Desktop desktop;
    BrokenView broken(desktop.engine.get(), u"StatusPopover.qml"_s);
    QSignalSpy failed(&desktop.popover, &PopoverWindow::failed);
    for (int i = 0; i < 2; ++i) {
        QTest::ignoreMessage(QtWarningMsg, BrokenView::warning());
        desktop.popover.toggle(desktop.ring);
        QCOMPARE(failed.size(), i + 1);
        QVERIFY(!desktop.popover.isOpen());
        QVERIFY(!desktop.stores.store.popoverIsOpen());
    }
    QTest::ignoreMessage(QtWarningMsg, BrokenView::warning());
    desktop.popover.open(desktop.ring);
    desktop.popover.close();
    QVERIFY(!desktop.popover.view());
}

void PopoverWindowTest::aClickOpensAndAClickCloses()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    QVERIFY(QTest::qWaitForWindowActive(desktop.popover.view()));
    QVERIFY(desktop.popover.isOpen());
    QVERIFY(desktop.stores.store.popoverIsOpen());
    desktop.popover.toggle(desktop.ring);
    QVERIFY(!desktop.popover.view()->isVisible());
    QVERIFY(!desktop.stores.store.popoverIsOpen());
    desktop.popover.toggle(desktop.ring);
    QVERIFY(desktop.popover.isOpen());
}

void PopoverWindowTest::opensBesideTheRingInsideTheScreen()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    QCOMPARE(desktop.card().width(), 320);
    QVERIFY(desktop.card().height() >= 260);
    QCOMPARE(desktop.card().top(), desktop.ring.rectangle.bottom() + 1 + 6);
    QVERIFY(qAbs(desktop.card().center().x() - desktop.ring.rectangle.center().x()) <= 1);
}

void PopoverWindowTest::opensInsideTheScreenWhenThePlaceOfTheRingIsUnknown()
{
    Desktop desktop;
    const auto available = QGuiApplication::primaryScreen()->availableGeometry();
    desktop.popover.toggle();
    QVERIFY(available.contains(desktop.card()));
    desktop.popover.close();
    desktop.popover.open();
    QVERIFY(available.contains(desktop.card()));
    QCOMPARE(desktop.card().right(), available.right() - 6);
}

void PopoverWindowTest::staysInsideTheScreenWhenItGrows()
{
    Desktop desktop;
    const auto available = QGuiApplication::primaryScreen()->availableGeometry();
    desktop.popover.toggle({QRect(available.center().x(), available.bottom() - 20, 20, 20), {}});
    const auto before = desktop.card();
    desktop.stores.settings.setEnabledServices({allServiceIDs.begin(), allServiceIDs.end()});
    QTRY_VERIFY(desktop.card().height() > before.height());
    QCOMPARE(desktop.card().bottom(), before.bottom());
    QVERIFY(available.contains(desktop.card()));
}

void PopoverWindowTest::openingAnOpenPopoverKeepsIt()
{
    Desktop desktop;
    const QSignalSpy closed(&desktop.popover, &PopoverWindow::closed);
    desktop.popover.open(desktop.ring);
    QVERIFY(QTest::qWaitForWindowActive(desktop.popover.view()));
    desktop.popover.open(desktop.ring);
    QVERIFY(desktop.popover.isOpen());
    QCOMPARE(closed.count(), 0);
    // Behind another window it appears in front again.
    const Elsewhere elsewhere;
    desktop.popover.open(desktop.ring);
    QVERIFY(QTest::qWaitForWindowActive(desktop.popover.view()));
}

void PopoverWindowTest::escapeCloses()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    QVERIFY(QTest::qWaitForWindowActive(desktop.popover.view()));
    QTest::keyClick(desktop.popover.view(), Qt::Key_Escape);
    QVERIFY(!desktop.popover.isOpen());
    QVERIFY(!desktop.popover.view()->isVisible());
}

void PopoverWindowTest::controlWCloses()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    QVERIFY(QTest::qWaitForWindowActive(desktop.popover.view()));
    QTest::keyClick(desktop.popover.view(), Qt::Key_W, Qt::ControlModifier);
    QVERIFY(!desktop.popover.isOpen());
}

void PopoverWindowTest::controlQQuits()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    QVERIFY(QTest::qWaitForWindowActive(desktop.popover.view()));
    QTimer::singleShot(0, &desktop.popover,
                       [&] { QTest::keyClick(desktop.popover.view(), Qt::Key_Q, Qt::ControlModifier); });
    QTimer giveUp;
    giveUp.callOnTimeout([] { QCoreApplication::exit(1); });
    giveUp.start(5s);
    QCOMPARE(QCoreApplication::exec(), 0);
}

void PopoverWindowTest::controlCommaRequestsTheSettings()
{
    Desktop desktop;
    const QSignalSpy requested(&desktop.popover, &PopoverWindow::settingsRequested);
    desktop.popover.toggle(desktop.ring);
    QVERIFY(QTest::qWaitForWindowActive(desktop.popover.view()));
    QTest::keyClick(desktop.popover.view(), Qt::Key_Comma, Qt::ControlModifier);
    QVERIFY(!desktop.popover.isOpen());
    QCOMPARE(requested.count(), 1);
}

void PopoverWindowTest::whatClosesItGoesNoFurther_data()
{
    QTest::addColumn<QKeyCombination>("key");
    QTest::newRow("Escape") << QKeyCombination(Qt::Key_Escape);
    QTest::newRow("Ctrl+W") << (Qt::CTRL | Qt::Key_W);
    QTest::newRow("Ctrl+,") << (Qt::CTRL | Qt::Key_Comma);
    QTest::newRow("a press on the shadow") << QKeyCombination(Qt::Key_unknown);
}

void PopoverWindowTest::whatClosesItGoesNoFurther()
{
    QFETCH(const QKeyCombination, key);
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    auto *view = desktop.popover.view();
    QVERIFY(QTest::qWaitForWindowActive(view));
    Presses presses;
    view->installEventFilter(&presses);
    view->installEventFilter(&desktop.popover); // the last one comes first
    QTest::keyClick(view, Qt::Key_A);
    QCOMPARE(presses.count, 1);
    if (key.key() == Qt::Key_unknown) {
        QTest::mousePress(view, Qt::LeftButton, {}, {5, 5});
    } else {
        QTest::keyPress(view, key.key(), key.keyboardModifiers());
    }
    QVERIFY(!desktop.popover.isOpen());
    QCOMPARE(presses.count, 1);
}

void PopoverWindowTest::opensAtThePointOfTheClickOnItsScreen()
{
    Desktop desktop;
    const auto second = QGuiApplication::screens().at(1)->geometry();
    QVERIFY(second.left() > 0);
    const auto clicked = second.topLeft() + QPoint(300, 2);
    desktop.popover.toggle({{}, clicked});
    QCOMPARE(desktop.card().top(), clicked.y() + 1 + 6);
    QVERIFY(qAbs(desktop.card().center().x() - clicked.x()) <= 1);
    // The shadow is drawn on the left as far as on the right.
    const auto card = desktop.popover.card();
    QCOMPARE(card.left(), desktop.popover.view()->width() - card.right() - 1);
    QVERIFY(second.contains(desktop.popover.view()->geometry()));
}

void PopoverWindowTest::losingTheFocusCloses()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    QVERIFY(QTest::qWaitForWindowActive(desktop.popover.view()));
    const Elsewhere elsewhere;
    QTRY_VERIFY(!desktop.popover.isOpen());
    QVERIFY(!desktop.popover.view()->isVisible());
}

void PopoverWindowTest::theClickThatTookTheFocusDoesNotReopen()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    QVERIFY(QTest::qWaitForWindowActive(desktop.popover.view()));
    const Elsewhere elsewhere;
    QTRY_VERIFY(!desktop.popover.isOpen());
    desktop.stores.clock.advance(150ms);
    desktop.popover.toggle(desktop.ring);
    QVERIFY(!desktop.popover.isOpen());
    desktop.popover.toggle(desktop.ring);
    QVERIFY(desktop.popover.isOpen());
}

void PopoverWindowTest::aLaterClickReopens()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    QVERIFY(QTest::qWaitForWindowActive(desktop.popover.view()));
    const Elsewhere elsewhere;
    QTRY_VERIFY(!desktop.popover.isOpen());
    desktop.stores.clock.advance(500ms);
    desktop.popover.toggle(desktop.ring);
    QVERIFY(desktop.popover.isOpen());
}

void PopoverWindowTest::requestingTheSettingsCloses()
{
    Desktop desktop;
    const QSignalSpy requested(&desktop.popover, &PopoverWindow::settingsRequested);
    desktop.popover.toggle(desktop.ring);
    QVERIFY(QTest::qWaitForWindowExposed(desktop.popover.view()));
    auto *button = desktop.popover.view()->rootObject()->findChild<QQuickItem *>(u"settingsButton"_s);
    QTest::mouseClick(desktop.popover.view(), Qt::LeftButton, {}, button->mapToScene(QPointF(13, 13)).toPoint());
    QCOMPARE(requested.count(), 1);
    QVERIFY(!desktop.popover.isOpen());
}

void PopoverWindowTest::aCloseByTheDesktopCountsAsClosed()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    desktop.popover.view()->close();
    QVERIFY(!desktop.popover.isOpen());
    desktop.popover.toggle(desktop.ring);
    QVERIFY(desktop.popover.view()->isVisible());
}

void PopoverWindowTest::aPressOnTheShadowCloses()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    QVERIFY(QTest::qWaitForWindowExposed(desktop.popover.view()));
    QTest::mousePress(desktop.popover.view(), Qt::LeftButton, {}, {5, 5});
    QVERIFY(!desktop.popover.isOpen());
}

void PopoverWindowTest::aPressOnThePopoverDoesNotCloseIt()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    QVERIFY(QTest::qWaitForWindowExposed(desktop.popover.view()));
    QTest::mousePress(desktop.popover.view(), Qt::LeftButton, {}, desktop.popover.card().topLeft() + QPoint(5, 5));
    QVERIFY(desktop.popover.isOpen());
}

void PopoverWindowTest::isATranslucentWindowWithoutAFrame()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    const auto *view = desktop.popover.view();
    QCOMPARE(view->title(), u"Kelvo"_s);
    QCOMPARE(view->color(), QColor(Qt::transparent));
    QCOMPARE(view->flags(), Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint);
}

void PopoverWindowTest::isNotUnloadedWhileItIsOpen()
{
    Desktop desktop;
    desktop.popover.toggle(desktop.ring);
    desktop.popover.unload();
    QVERIFY(desktop.popover.view()->isVisible());
    desktop.popover.close();
    desktop.popover.unload();
    QVERIFY(!desktop.popover.view());
    desktop.popover.toggle(desktop.ring);
    QVERIFY(desktop.popover.view()->isVisible());
}

void PopoverWindowTest::nothingIsPendingWhileClosed()
{
    Desktop desktop;
    desktop.stores.round();
    const auto before = desktop.stores.clock.pendingCount();
    desktop.popover.toggle(desktop.ring);
    desktop.popover.close();
    settle();
    QCOMPARE(desktop.stores.clock.pendingCount(), before);
}

void PopoverWindowTest::hasRoundCornersInAShadow_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void PopoverWindowTest::hasRoundCornersInAShadow()
{
    QFETCH(bool, dark);
    Desktop desktop;
    desktop.appearance.dark = dark;
    desktop.appearance.still = true;
    desktop.stores.round();
    desktop.popover.toggle(desktop.ring);
    desktop.popover.view()->setColor(dark ? QColor(0x3a414b) : QColor(0xcfd6e0)); // the background behind the window
    QVERIFY(QTest::qWaitForWindowExposed(desktop.popover.view()));
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(picture(*desktop.popover.view()),
                               u"popover-window-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

} // namespace kelvo

int main(int argc, char *argv[])
{
    QTemporaryFile screens;
    if (!screens.open()
        || screens.write(R"({"screens": [{"name": "first", "width": 800, "height": 800},
                                         {"name": "second", "x": 800, "width": 800, "height": 800}]})")
            <= 0
        || !screens.flush()) {
        return EXIT_FAILURE;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toLocal8Bit());
    QApplication application(argc, argv);
    kelvo::PopoverWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_popoverwindow.moc"
