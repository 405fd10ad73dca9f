#include "support/BrokenView.h"
#include "support/FakeAppearance.h"
#include "support/Stores.h"

#include "platform/Platform.h"
#include "windows/QuickViews.h"
#include "windows/settings/SettingsState.h"

#include <QGuiApplication>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

/// The views of a program that is at rest: no monitor is running.
struct Desktop
{
    Desktop()
    {
        auto manual = std::make_unique<ManualClock>();
        clock = manual.get();
        platform.clock = std::move(manual);
        auto appearance = std::make_unique<FakeAppearance>();
        appearance->still = true;
        platform.appearance = std::move(appearance);
        views = std::make_unique<QuickViews>(stores.store, stores.settings, stores.notifier, platform);
    }

    /// The window with this title; null if it is not loaded.
    static QQuickView *loaded(const QString &title)
    {
        for (auto *window : QGuiApplication::allWindows()) {
            if (window->title() == title) {
                return qobject_cast<QQuickView *>(window);
            }
        }
        return nullptr;
    }
    static QQuickView *popover() { return loaded(u"Kelvo"_s); }
    static QQuickView *settings() { return loaded(u"Kelvo Settings"_s); }

    void open()
    {
        views->openPopover({QRect(300, 2, 24, 24), {}});
        settle();
    }
    void close()
    {
        popover()->close();
        settle();
    }
    void pass(std::chrono::milliseconds time)
    {
        clock->advance(time);
        settle();
    }

    Stores stores{{ServiceID::claude, ServiceID::chatgpt}};
    Platform platform;
    ManualClock *clock;
    std::unique_ptr<QuickViews> views;
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
        Desktop desktop;
        desktop.views->openSettings();
        auto *window = open(settingsTitle);
        QVERIFY(window);
        QVERIFY(!open(onboardingTitle));
        QVERIFY(QTest::qWaitForWindowActive(window));
        window->showMinimized();
        desktop.clock->advance(50ms);
        QVERIFY(!window->windowStates().testFlag(Qt::WindowMinimized));
    }

    void theOnboardingOpensAndComesForward()
    {
        Desktop desktop;
        desktop.views->openOnboarding();
        auto *window = open(onboardingTitle);
        QVERIFY(window);
        QVERIFY(!open(settingsTitle));
        window->showMinimized();
        desktop.clock->advance(50ms);
        QVERIFY(!window->windowStates().testFlag(Qt::WindowMinimized));
    }

    void theSettingsShowTheOnboardingAgain()
    {
        Desktop desktop;
        desktop.views->openSettings();
        open(settingsTitle)->findChild<SettingsState *>()->showOnboarding();
        QVERIFY(open(onboardingTitle));
    }

    void theKeyOfTheSettingsOpensThemFromEveryWindow()
    {
        Desktop desktop;
        desktop.views->openOnboarding();
        QVERIFY(QTest::qWaitForWindowActive(open(onboardingTitle)));
        QTest::keyClick(open(onboardingTitle), Qt::Key_Comma, Qt::ControlModifier);
        QVERIFY(open(settingsTitle));
        QTest::keyClick(open(settingsTitle), Qt::Key_W, Qt::ControlModifier);
        QVERIFY(!open(settingsTitle));

        desktop.views->openPopover({});
        QVERIFY(QTest::qWaitForWindowActive(open({})));
        QTest::keyClick(open({}), Qt::Key_Comma, Qt::ControlModifier);
        QVERIFY(open(settingsTitle));
    }

    void aClickOnTheRingTogglesThePopover()
    {
        Desktop desktop;
        desktop.views->togglePopover({});
        QVERIFY(QTest::qWaitForWindowActive(open({})));
        desktop.views->togglePopover({});
        QVERIFY(!open({}));
        desktop.views->openPopover({});
        QVERIFY(open({}));
    }

    void aViewThatCannotBeLoadedIsReportedAndUnloaded()
    {
        Desktop desktop;
        desktop.open();
        desktop.close();
        const QPointer<QQmlEngine> engine = desktop.popover()->engine();
        QSignalSpy failed(desktop.views.get(), &Views::failed);
        auto broken = std::make_optional<BrokenView>(*engine, u"SettingsView.qml"_s);
        desktop.pass(9min);
        QTest::ignoreMessage(QtWarningMsg, BrokenView::warning());
        desktop.views->openSettings();
        QCOMPARE(failed.size(), 1);
        QVERIFY(!open(settingsTitle));
        broken.reset();
        desktop.pass(9min);
        QVERIFY(engine);
        desktop.pass(1min);
        QVERIFY(!engine);
        desktop.views->openSettings();
        QVERIFY(open(settingsTitle));
        QCOMPARE(failed.size(), 1);
    }

    void aPopoverThatCannotBeLoadedIsReportedToo()
    {
        Desktop desktop;
        desktop.views->openSettings();
        const BrokenView broken(*desktop.settings()->engine(), u"StatusPopover.qml"_s);
        const QSignalSpy failed(desktop.views.get(), &Views::failed);
        QTest::ignoreMessage(QtWarningMsg, BrokenView::warning());
        desktop.views->openPopover({});
        QCOMPARE(failed.size(), 1);
        QVERIFY(!desktop.popover());
    }

    void whatIsNotUsedForTenMinutesIsUnloaded()
    {
        Desktop desktop;
        desktop.open();
        const QPointer<QQmlEngine> engine = desktop.popover()->engine();
        desktop.close();
        desktop.pass(10min - 1ms);
        QVERIFY(desktop.popover());
        QVERIFY(engine);
        desktop.pass(1ms);
        QVERIFY(!desktop.popover());
        QVERIFY(!engine);
        QCOMPARE(desktop.clock->pendingCount(), 0U);
    }

    void whatWasUnloadedOpensAgain()
    {
        Desktop desktop;
        desktop.open();
        desktop.close();
        desktop.pass(10min);
        desktop.open();
        QVERIFY(desktop.popover()->isVisible());
        QCOMPARE(desktop.popover()->rootObject()->findChild<QObject *>(u"heroName"_s)->property("text").toString(),
                 u"Claude"_s);
        desktop.close();
        desktop.pass(10min);
        QVERIFY(!desktop.popover());
    }

    void anOpeningStartsTheTenMinutesAnew()
    {
        Desktop desktop;
        desktop.open();
        desktop.close();
        desktop.pass(9min);
        desktop.open();
        desktop.close();
        desktop.pass(9min);
        QVERIFY(desktop.popover());
        desktop.pass(1min);
        QVERIFY(!desktop.popover());
    }

    void nothingIsUnloadedWhileAViewIsOpen()
    {
        Desktop desktop;
        desktop.open();
        desktop.close();
        desktop.views->openSettings();
        const QPointer<QQmlEngine> engine = desktop.settings()->engine();
        desktop.pass(30min);
        QVERIFY(desktop.settings()->isVisible());
        QVERIFY(engine);
        desktop.settings()->close();
        desktop.pass(10min - 1ms);
        QVERIFY(engine);
        desktop.pass(1ms);
        QVERIFY(!engine);
        QVERIFY(!desktop.popover());
    }

    void thePopoverStaysWhileItIsOpen()
    {
        Desktop desktop;
        desktop.open();
        desktop.close();
        desktop.pass(5min);
        desktop.open();
        desktop.pass(30min);
        QVERIFY(desktop.popover()->isVisible());
    }
};

} // namespace kelvo

QTEST_MAIN(kelvo::QuickViewsTest)
#include "tst_quickviews.moc"
