#include "menubar/WindowOpener.h"
#include "support/ManualClock.h"

#include <QRegularExpression>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

struct TestWindow : QWindow
{
    explicit TestWindow(const QString &title, Qt::WindowFlags flags = Qt::Window)
    {
        setTitle(title);
        setFlags(flags);
    }
    bool isInFront() const { return QGuiApplication::focusWindow() == this; }
};

struct World
{
    World()
    {
        elsewhere.show();
        elsewhere.requestActivate();
        if (!QTest::qWaitForWindowActive(&elsewhere)) {
            qFatal("The window did not become active");
        }
    }

    ManualClock clock;
    WindowOpener opener{clock};
    TestWindow elsewhere{u"Elsewhere"_s, Qt::Tool};
};

} // namespace

class WindowOpenerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksFirstAfter50Milliseconds();
    void waitsForTheWindowToAppear();
    void givesUpAfterThe20thAttempt();
    void findsTheWindowAtThe20thAttempt();
    void findsByTitle();
    void theOnboardingWindowIsNeverTakenForTheSettings();
    void panelsAndFramelessWindowsAreNotTheSettings();
    void aDialogCountsAsTheSettings();
    void bringsAMinimizedWindowBack();
    void searchesAreIndependent();
    void aSearchThatHasEndedIsForgotten();
    void destroyingTheOpenerEndsItsSearches();
};

void WindowOpenerTest::looksFirstAfter50Milliseconds()
{
    World world;
    TestWindow settings(u"Kelvo Settings"_s);
    settings.show();
    world.elsewhere.requestActivate();
    QTRY_VERIFY(world.elsewhere.isInFront());
    world.opener.bringSettingsForward();
    world.clock.advance(49ms);
    QVERIFY(world.elsewhere.isInFront());
    world.clock.advance(1ms);
    QTRY_VERIFY(settings.isInFront());
    QCOMPARE(world.clock.pendingCount(), std::size_t(0));
}

void WindowOpenerTest::waitsForTheWindowToAppear()
{
    World world;
    TestWindow settings(u"Kelvo Settings"_s);
    world.opener.bringSettingsForward();
    world.clock.advance(400ms);
    settings.show();
    world.elsewhere.requestActivate();
    QTRY_VERIFY(world.elsewhere.isInFront());
    world.clock.advance(50ms);
    QTRY_VERIFY(settings.isInFront());
}

void WindowOpenerTest::givesUpAfterThe20thAttempt()
{
    World world;
    int asked = 0;
    world.opener.bringForward([&asked](const QWindow &) {
        ++asked;
        return false;
    });
    world.clock.advance(1000ms);
    QCOMPARE(world.clock.firedCount(), std::size_t(20));
    QCOMPARE(asked, 20);
    QCOMPARE(world.clock.pendingCount(), std::size_t(0));
}

void WindowOpenerTest::findsTheWindowAtThe20thAttempt()
{
    World world;
    TestWindow settings(u"Kelvo Settings"_s);
    world.opener.bringSettingsForward();
    world.clock.advance(950ms);
    settings.show();
    world.elsewhere.requestActivate();
    QTRY_VERIFY(world.elsewhere.isInFront());
    world.clock.advance(50ms);
    QTRY_VERIFY(settings.isInFront());
}

void WindowOpenerTest::findsByTitle()
{
    World world;
    TestWindow settings(u"Kelvo Settings"_s);
    TestWindow onboarding(u"Welcome to Kelvo"_s);
    onboarding.show();
    settings.show();
    QTRY_VERIFY(settings.isInFront());
    world.opener.bringForward(u"Welcome to Kelvo"_s);
    world.clock.advance(50ms);
    QTRY_VERIFY(onboarding.isInFront());
}

void WindowOpenerTest::theOnboardingWindowIsNeverTakenForTheSettings()
{
    World world;
    TestWindow onboarding(u"Welcome to Kelvo"_s);
    onboarding.show();
    world.elsewhere.requestActivate();
    QTRY_VERIFY(world.elsewhere.isInFront());
    world.opener.bringSettingsForward();
    world.clock.advance(1000ms);
    QVERIFY(world.elsewhere.isInFront());
    QCOMPARE(world.clock.firedCount(), std::size_t(20));
}

void WindowOpenerTest::panelsAndFramelessWindowsAreNotTheSettings()
{
    World world;
    TestWindow popover(u"Kelvo"_s, Qt::Tool | Qt::FramelessWindowHint);
    TestWindow panel(u"Panel"_s, Qt::Tool);
    TestWindow frameless(u"Frameless"_s, Qt::Window | Qt::FramelessWindowHint);
    TestWindow menu(u"Menu"_s, Qt::Popup);
    for (auto *window : {&popover, &panel, &frameless, &menu}) {
        window->show();
    }
    world.opener.bringSettingsForward();
    world.clock.advance(1000ms);
    QCOMPARE(world.clock.firedCount(), std::size_t(20));
}

void WindowOpenerTest::aDialogCountsAsTheSettings()
{
    World world;
    TestWindow settings(u"Kelvo Settings"_s, Qt::Dialog);
    settings.show();
    world.elsewhere.requestActivate();
    QTRY_VERIFY(world.elsewhere.isInFront());
    world.opener.bringSettingsForward();
    world.clock.advance(50ms);
    QTRY_VERIFY(settings.isInFront());
}

void WindowOpenerTest::bringsAMinimizedWindowBack()
{
    World world;
    TestWindow settings(u"Kelvo Settings"_s);
    settings.showMinimized();
    world.opener.bringSettingsForward();
    world.clock.advance(50ms);
    QVERIFY(!settings.windowStates().testFlag(Qt::WindowMinimized));
}

void WindowOpenerTest::searchesAreIndependent()
{
    World world;
    TestWindow onboarding(u"Welcome to Kelvo"_s);
    TestWindow settings(u"Kelvo Settings"_s);
    world.opener.bringForward(u"Welcome to Kelvo"_s);
    world.clock.advance(100ms);
    world.opener.bringSettingsForward();
    settings.show();
    world.clock.advance(50ms);
    QCOMPARE(world.clock.pendingCount(), std::size_t(1));
    onboarding.show();
    settings.requestActivate();
    QTRY_VERIFY(settings.isInFront());
    world.clock.advance(50ms);
    QTRY_VERIFY(onboarding.isInFront());
}

void WindowOpenerTest::aSearchThatHasEndedIsForgotten()
{
    World world;
    for (const bool isFound : {true, false}) {
        const auto owned = std::make_shared<bool>(isFound);
        world.opener.bringForward([owned](const QWindow &) { return *owned; });
        QVERIFY(owned.use_count() > 1);
        world.clock.advance(1000ms);
        QCOMPARE(owned.use_count(), 1);
    }
}

void WindowOpenerTest::destroyingTheOpenerEndsItsSearches()
{
    ManualClock clock;
    {
        WindowOpener opener(clock);
        opener.bringSettingsForward();
        QCOMPARE(clock.pendingCount(), std::size_t(1));
    }
    QCOMPARE(clock.pendingCount(), std::size_t(0));
}

} // namespace kelvo

QTEST_MAIN(kelvo::WindowOpenerTest)
#include "tst_windowopener.moc"
