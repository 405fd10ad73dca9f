#include "support/BrokenView.h"
#include "support/ViewScene.h"

#include "windows/onboarding/OnboardingSceneWindow.h"
#include "windows/settings/SettingsSceneWindow.h"

#include <QPointer>
#include <QScreen>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

struct Desktop
{
    Desktop() { appearance.still = true; }

    FakeAppearance appearance;
    ViewEngine engine{appearance};
    Tokens tokens{&appearance};
    Stores stores{{ServiceID::claude}};
    SettingsSceneWindow settings{stores.settings, stores.notifier, engine, appearance};
    OnboardingSceneWindow onboarding{stores.settings, stores.notifier, engine, appearance};
};

/// A control that records the keys that it receives.
struct KeyRecorder : QQuickItem
{
    void keyPressEvent(QKeyEvent *event) override { keys.append(event->key()); }

    QList<int> keys;
};

/// Clicks the visible item with this name.
void click(QQuickView *view, const QString &name)
{
    const auto items = view->rootObject()->findChildren<QQuickItem *>(name);
    const auto found = std::find_if(items.begin(), items.end(), [](QQuickItem *item) { return item->isVisible(); });
    QVERIFY(found != items.end());
    auto *item = *found;
    QTest::mouseClick(view, Qt::LeftButton, {}, item->mapToScene({item->width() / 2, item->height() / 2}).toPoint());
}

} // namespace

class SceneWindowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Ignore the warnings about functions that the offscreen platform does not support.
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }

    void theSettingsOpenAsHighAsTheirContentOrTheScreen();
    void theSettingsReadThePermissionAgainWhenTheyGetTheFocus();
    void aViewThatCannotBeLoadedOpensNoWindow();
    void aSheetThatCannotBeLoadedIsDismissed();
    void theOnboardingWindowHasAFixedSize();
    void aWindowHasNoButtonToMaximizeIt();
    void theViewFillsItsWindow();
    void openingTwiceKeepsTheWindow();
    void closingDestroysTheScene();
    void closingWithAnOpenSheetDestroysTheScene();
    void theDesktopCanCloseTheWindow();
    void aClosedWindowIsNotClosedAgain();
    void controlWCloses();
    void controlQQuits();
    void theKeysOfTheWindowDoNotReachItsControls_data();
    void theKeysOfTheWindowDoNotReachItsControls();
    void theBackgroundFollowsTheAppearance();
    void theWindowReportsShowOnboardingAgain();
    void doneClosesTheOnboardingWindow();
    void aRepetitionThatIsNotMarkedTurnsNoPage();
    void closingWithoutDoneDoesNotCompleteTheOnboarding();
    void eachOpeningStartsAtTheFirstPage();
    void theProgramCanExitWithOpenWindows();
};

void SceneWindowsTest::theSettingsOpenAsHighAsTheirContentOrTheScreen()
{
    Desktop desktop;
    desktop.settings.open();
    auto *view = desktop.settings.view();
    const auto sizeBeforeTheFirstFrame = view->size();
    const auto maximumBeforeTheFirstFrame = view->maximumSize();
    QVERIFY(QTest::qWaitForWindowActive(view));
    const int content = qCeil(view->rootObject()->implicitHeight());
    const int room = QGuiApplication::primaryScreen()->availableGeometry().height() - 40;
    QCOMPARE(view->title(), u"Kelvo Settings"_s);
    QCOMPARE(view->size(), QSize(400, std::min(content, room)));
    QCOMPARE(view->minimumSize(), QSize(400, std::min(560, room)));
    QCOMPARE(view->maximumSize(), QSize(400, content));
    QCOMPARE(sizeBeforeTheFirstFrame, view->size());
    QCOMPARE(maximumBeforeTheFirstFrame, view->maximumSize());
    settle();
    QCOMPARE(qCeil(view->rootObject()->implicitHeight()), content);
}

void SceneWindowsTest::theSettingsReadThePermissionAgainWhenTheyGetTheFocus()
{
    Desktop desktop;
    desktop.settings.open();
    auto *view = desktop.settings.view();
    QVERIFY(QTest::qWaitForWindowActive(view));
    auto *row = findItem(view->contentItem(), u"channel-thisMac"_s);
    auto *help = findItem(row, u"help"_s);
    QVERIFY(!help->isVisible());
    const int height = view->maximumHeight();

    // The user turns the notifications off in another window and comes back.
    QWindow elsewhere;
    elsewhere.show();
    elsewhere.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&elsewhere));
    desktop.stores.center.turnedOff = u"Settings › Notifications"_s;
    view->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(view));
    QVERIFY(help->isVisible());
    layOut(view->contentItem());
    QCOMPARE(view->maximumHeight(), height + qCeil(row->height() - 34));
    QCOMPARE(view->height(),
             std::min(view->maximumHeight(), QGuiApplication::primaryScreen()->availableGeometry().height() - 40));
}

void SceneWindowsTest::aViewThatCannotBeLoadedOpensNoWindow()
{
    Desktop desktop;
    BrokenView broken(desktop.engine.get(), u"OnboardingPage.qml"_s);
    QSignalSpy failed(&desktop.onboarding, &SceneWindow::failed);
    QTest::ignoreMessage(QtWarningMsg, BrokenView::warning());
    desktop.onboarding.open();
    QCOMPARE(failed.size(), 1);
    QVERIFY(!desktop.onboarding.isOpen());
    QVERIFY(!desktop.onboarding.view());
    desktop.settings.open();
    QVERIFY(desktop.settings.isOpen());
    settle();
}

void SceneWindowsTest::aSheetThatCannotBeLoadedIsDismissed()
{
    Desktop desktop;
    BrokenView broken(desktop.engine.get(), u"SheetPopup.qml"_s);
    desktop.settings.open();
    auto *state = desktop.settings.view()->findChild<SettingsState *>();
    QSignalSpy failed(&desktop.settings, &SceneWindow::failed);
    for (int i = 0; i < 2; ++i) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"module \"Missing.Module\" is not installed$"_s));
        state->tapChannel(u"slack"_s);
        QCOMPARE(failed.size(), i + 1);
        QVERIFY(!state->channelSheet());
    }
    QVERIFY(desktop.settings.isOpen());
    settle();
}

void SceneWindowsTest::theOnboardingWindowHasAFixedSize()
{
    Desktop desktop;
    desktop.onboarding.open();
    auto *view = desktop.onboarding.view();
    QCOMPARE(view->title(), u"Welcome to Kelvo"_s);
    QCOMPARE(view->size(), QSize(400, 300));
    QCOMPARE(view->minimumSize(), QSize(400, 300));
    QCOMPARE(view->maximumSize(), QSize(400, 300));
}

void SceneWindowsTest::aWindowHasNoButtonToMaximizeIt()
{
    Desktop desktop;
    for (SceneWindow *window : std::initializer_list<SceneWindow *>{&desktop.settings, &desktop.onboarding}) {
        window->open();
        QCOMPARE(window->view()->flags(),
                 Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint
                     | Qt::WindowMinimizeButtonHint);
    }
}

void SceneWindowsTest::theViewFillsItsWindow()
{
    Desktop desktop;
    desktop.settings.open();
    auto *view = desktop.settings.view();
    for (const int height : {600, 570}) {
        view->resize(view->width(), height);
        QTRY_COMPARE(view->rootObject()->size(), QSizeF(400, height));
    }
}

void SceneWindowsTest::openingTwiceKeepsTheWindow()
{
    Desktop desktop;
    desktop.settings.open();
    const auto *view = desktop.settings.view();
    desktop.settings.open();
    QCOMPARE(desktop.settings.view(), view);
}

void SceneWindowsTest::closingDestroysTheScene()
{
    Desktop desktop;
    QSignalSpy closed(&desktop.settings, &SceneWindow::closed);
    desktop.settings.open();
    QPointer view = desktop.settings.view();
    QPointer root = view->rootObject();
    QPointer state = view->findChild<SettingsState *>();
    QVERIFY(state);
    desktop.settings.close();
    QVERIFY(!desktop.settings.isOpen());
    QVERIFY(!view->isVisible());
    QCOMPARE(closed.count(), 1);
    settle();
    QVERIFY(!view);
    QVERIFY(!root);
    QVERIFY(!state);
    desktop.settings.open();
    QVERIFY(desktop.settings.isOpen());
}

void SceneWindowsTest::closingWithAnOpenSheetDestroysTheScene()
{
    Desktop desktop;
    desktop.settings.open();
    QPointer view = desktop.settings.view();
    view->findChild<SettingsState *>()->tapChannel(u"slack"_s);
    settle();
    QVERIFY(findItem(view->contentItem(), u"channelSheet"_s));
    QTest::keyClick(view, Qt::Key_W, Qt::ControlModifier);
    settle();
    QVERIFY(!view);
}

void SceneWindowsTest::theDesktopCanCloseTheWindow()
{
    Desktop desktop;
    QSignalSpy closed(&desktop.onboarding, &SceneWindow::closed);
    desktop.onboarding.open();
    desktop.onboarding.view()->close();
    QVERIFY(!desktop.onboarding.isOpen());
    QCOMPARE(closed.count(), 1);
    settle();
}

void SceneWindowsTest::aClosedWindowIsNotClosedAgain()
{
    Desktop desktop;
    const QSignalSpy closed(&desktop.settings, &SceneWindow::closed);
    desktop.settings.close();
    QCOMPARE(closed.count(), 0);
    desktop.settings.open();
    desktop.settings.close();
    desktop.settings.close();
    QCOMPARE(closed.count(), 1);
}

void SceneWindowsTest::controlWCloses()
{
    Desktop desktop;
    desktop.settings.open();
    QVERIFY(QTest::qWaitForWindowActive(desktop.settings.view()));
    QTest::keyClick(desktop.settings.view(), Qt::Key_W, Qt::ControlModifier);
    QVERIFY(!desktop.settings.isOpen());
}

void SceneWindowsTest::controlQQuits()
{
    Desktop desktop;
    desktop.settings.open();
    QVERIFY(QTest::qWaitForWindowActive(desktop.settings.view()));
    QTimer::singleShot(0, &desktop.settings,
                       [&] { QTest::keyClick(desktop.settings.view(), Qt::Key_Q, Qt::ControlModifier); });
    QTimer giveUp;
    giveUp.callOnTimeout([] { QCoreApplication::exit(1); });
    giveUp.start(std::chrono::seconds(5));
    QCOMPARE(QCoreApplication::exec(), 0);
}

void SceneWindowsTest::theKeysOfTheWindowDoNotReachItsControls_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<bool>("reachesThem");
    QTest::newRow("close") << Qt::Key_W << false;
    QTest::newRow("settings") << Qt::Key_Comma << false;
    QTest::newRow("another one") << Qt::Key_C << true;
}

void SceneWindowsTest::theKeysOfTheWindowDoNotReachItsControls()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const bool, reachesThem);
    Desktop desktop;
    desktop.settings.open();
    auto *view = desktop.settings.view();
    QVERIFY(QTest::qWaitForWindowActive(view));
    KeyRecorder control;
    control.setParentItem(view->rootObject());
    control.forceActiveFocus();
    QTest::keyClick(view, key, Qt::ControlModifier);
    QCOMPARE(control.keys.contains(key), reachesThem);
}

void SceneWindowsTest::theBackgroundFollowsTheAppearance()
{
    Desktop desktop;
    desktop.onboarding.open();
    QCOMPARE(desktop.onboarding.view()->color(), QColor(0xf5, 0xf5, 0xf7));
    desktop.appearance.setDark(true);
    QCOMPARE(desktop.onboarding.view()->color(), QColor(0x1e, 0x1e, 0x20));
}

void SceneWindowsTest::theWindowReportsShowOnboardingAgain()
{
    Desktop desktop;
    QSignalSpy asked(&desktop.settings, &SettingsSceneWindow::onboardingRequested);
    desktop.settings.open();
    desktop.settings.view()->findChild<SettingsState *>()->showOnboarding();
    QCOMPARE(asked.count(), 1);
}

void SceneWindowsTest::aRepetitionThatIsNotMarkedTurnsNoPage()
{
    Desktop desktop;
    desktop.onboarding.open();
    auto *view = desktop.onboarding.view();
    QVERIFY(QTest::qWaitForWindowActive(view));
    const auto *state = view->findChild<OnboardingState *>();
    const auto send = [view](QEvent::Type type, quint64 time) {
        QKeyEvent event(type, Qt::Key_Return, Qt::NoModifier);
        event.setTimestamp(time);
        QCoreApplication::sendEvent(view, &event);
    };
    send(QEvent::KeyPress, 1000);
    QCOMPARE(state->page(), OnboardingState::PrimaryPicker);
    send(QEvent::KeyRelease, 1500);
    send(QEvent::KeyPress, 1500);
    QCOMPARE(state->page(), OnboardingState::PrimaryPicker);
    send(QEvent::KeyRelease, 1530);
    send(QEvent::KeyPress, 1700);
    QCOMPARE(state->page(), OnboardingState::Permission);
}

void SceneWindowsTest::doneClosesTheOnboardingWindow()
{
    Desktop desktop;
    desktop.onboarding.open();
    auto *view = desktop.onboarding.view();
    QVERIFY(QTest::qWaitForWindowActive(view));
    for (const auto &button : {u"mainButton"_s, u"mainButton"_s, u"otherButton"_s, u"mainButton"_s}) {
        QVERIFY(desktop.onboarding.isOpen());
        click(view, button);
        if (desktop.onboarding.isOpen()) {
            settle();
        }
    }
    QVERIFY(!desktop.onboarding.isOpen());
    QVERIFY(desktop.stores.settings.hasOnboarded());
    settle();
}

void SceneWindowsTest::closingWithoutDoneDoesNotCompleteTheOnboarding()
{
    Desktop desktop;
    desktop.onboarding.open();
    desktop.onboarding.close();
    QVERIFY(!desktop.stores.settings.hasOnboarded());
    QVERIFY(!desktop.stores.preferences.contains(u"hasOnboarded"_s));
}

void SceneWindowsTest::eachOpeningStartsAtTheFirstPage()
{
    Desktop desktop;
    desktop.onboarding.open();
    desktop.onboarding.view()->findChild<OnboardingState *>()->continueToPicker();
    desktop.onboarding.close();
    desktop.stores.settings.setPrimary(ServiceID::cursor);
    desktop.onboarding.open();
    const auto *state = desktop.onboarding.view()->findChild<OnboardingState *>();
    QCOMPARE(state->page(), OnboardingState::Promise);
    QCOMPARE(state->selected(), 2);
}

void SceneWindowsTest::theProgramCanExitWithOpenWindows()
{
    QPointer<QQuickView> view;
    {
        Desktop desktop;
        desktop.settings.open();
        desktop.onboarding.open();
        view = desktop.settings.view();
    }
    QVERIFY(!view);
}

} // namespace kelvo

QTEST_MAIN(kelvo::SceneWindowsTest)
#include "tst_scenewindows.moc"
