#include "support/ViewScene.h"

#include "platform/Platform.h"
#include "windows/QuickViews.h"
#include "windows/settings/SettingsState.h"

#include <QGuiApplication>
#include <QQuickView>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

struct Program
{
    Program()
    {
        auto fakeAppearance = std::make_unique<FakeAppearance>();
        fakeAppearance->still = true;
        platform.appearance = std::move(fakeAppearance);
        auto manualClock = std::make_unique<ManualClock>();
        clock = manualClock.get();
        platform.clock = std::move(manualClock);
    }

    std::unique_ptr<Views> make() { return QuickViews::make(stores.store, stores.settings, stores.notifier, platform); }

    Stores stores{{ServiceID::claude}};
    Platform platform;
    ManualClock *clock = nullptr;
};

const auto settingsTitle = u"Kelvo Settings"_s;
const auto onboardingTitle = u"Welcome to Kelvo"_s;

/// The open window with this title; null if there is none. The popover has no title bar.
QQuickView *open(const QString &title)
{
    const auto windows = QGuiApplication::topLevelWindows();
    for (auto *window : windows) {
        const bool isIt = title.isEmpty() ? window->flags().testFlag(Qt::FramelessWindowHint)
                                          : window->title() == title;
        if (window->isVisible() && isIt) {
            return qobject_cast<QQuickView *>(window);
        }
    }
    return nullptr;
}

} // namespace

class QuickViewsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }

    void theSettingsOpenAndComeForward()
    {
        Program program;
        const auto views = program.make();
        QVERIFY(views);
        views->openSettings();
        auto *window = open(settingsTitle);
        QVERIFY(window);
        QVERIFY(!open(onboardingTitle));
        QVERIFY(QTest::qWaitForWindowActive(window));
        window->showMinimized();
        program.clock->advance(50ms);
        QVERIFY(!window->windowStates().testFlag(Qt::WindowMinimized));
    }

    void theOnboardingOpensAndComesForward()
    {
        Program program;
        const auto views = program.make();
        views->openOnboarding();
        auto *window = open(onboardingTitle);
        QVERIFY(window);
        QVERIFY(!open(settingsTitle));
        window->showMinimized();
        program.clock->advance(50ms);
        QVERIFY(!window->windowStates().testFlag(Qt::WindowMinimized));
    }

    void theSettingsShowTheOnboardingAgain()
    {
        Program program;
        const auto views = program.make();
        views->openSettings();
        open(settingsTitle)->findChild<SettingsState *>()->showOnboarding();
        QVERIFY(open(onboardingTitle));
    }

    void theKeyOfTheSettingsOpensThemFromEveryWindow()
    {
        Program program;
        const auto views = program.make();
        views->openOnboarding();
        QVERIFY(QTest::qWaitForWindowActive(open(onboardingTitle)));
        QTest::keyClick(open(onboardingTitle), Qt::Key_Comma, Qt::ControlModifier);
        QVERIFY(open(settingsTitle));
        QTest::keyClick(open(settingsTitle), Qt::Key_W, Qt::ControlModifier);
        QVERIFY(!open(settingsTitle));

        views->openPopover({});
        QVERIFY(QTest::qWaitForWindowActive(open({})));
        QTest::keyClick(open({}), Qt::Key_Comma, Qt::ControlModifier);
        QVERIFY(open(settingsTitle));
    }

    void aClickOnTheRingTogglesThePopover()
    {
        Program program;
        const auto views = program.make();
        views->togglePopover({});
        QVERIFY(QTest::qWaitForWindowActive(open({})));
        views->togglePopover({});
        QVERIFY(!open({}));
        views->openPopover({});
        QVERIFY(open({}));
    }
};

} // namespace kelvo

QTEST_MAIN(kelvo::QuickViewsTest)
#include "tst_quickviews.moc"
