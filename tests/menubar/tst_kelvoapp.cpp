#include "menubar/KelvoApp.h"

#include "menubar/MenuBarIcon.h"
#include "menubar/ViewsLoader.h"
#include "support/FakeAppearance.h"
#include "support/FakeStatusItem.h"
#include "support/Stores.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// The calls to all fake views that were made.
struct Told
{
    int made = 0;
    QStringList calls;
    RingPlace ring;
};
Told told;

class FakeViews : public Views
{
public:
    void togglePopover(const RingPlace &ring) override
    {
        told.calls << u"toggle popover"_s;
        told.ring = ring;
    }
    void openPopover(const RingPlace &ring) override
    {
        told.calls << u"popover"_s;
        told.ring = ring;
    }
    void openSettings() override { told.calls << u"settings"_s; }
    void openOnboarding() override { told.calls << u"onboarding"_s; }
};

std::unique_ptr<Views> makeFake(StatusStore &, SettingsStore &, NotifierStore &, Platform &)
{
    ++told.made;
    return std::make_unique<FakeViews>();
}

std::unique_ptr<Views> makeNone(StatusStore &, SettingsStore &, NotifierStore &, Platform &)
{
    ++told.made;
    return nullptr;
}

/// Views of which none can be loaded.
class FailingViews : public Views
{
public:
    void togglePopover(const RingPlace &) override { Q_EMIT failed(); }
    void openPopover(const RingPlace &) override { Q_EMIT failed(); }
    void openSettings() override { Q_EMIT failed(); }
    void openOnboarding() override { Q_EMIT failed(); }
};

std::unique_ptr<Views> makeFailing(StatusStore &, SettingsStore &, NotifierStore &, Platform &)
{
    ++told.made;
    return std::make_unique<FailingViews>();
}

struct Program
{
    explicit Program(ViewsFactory factory = &makeFake, bool hasOnboarded = true)
        : makeViews(factory)
    {
        told = {};
        stores.settings.setHasOnboarded(hasOnboarded);
        auto fakeItem = std::make_unique<FakeStatusItem>();
        item = fakeItem.get();
        auto fakeAppearance = std::make_unique<FakeAppearance>();
        appearance = fakeAppearance.get();
        platform.appearance = std::move(fakeAppearance);
        platform.statusItem = std::move(fakeItem);
        auto fakeCenter = std::make_unique<FakeNotificationCenter>();
        center = fakeCenter.get();
        platform.notificationCenter = std::move(fakeCenter);
        app = std::make_unique<KelvoApp>(stores.store, stores.settings, stores.notifier, platform, makeViews);
    }

    void choose(const QString &action)
    {
        for (auto *each : item->menu->actions()) {
            if (each->text() == action) {
                each->trigger();
                return;
            }
        }
        QFAIL(qPrintable(u"No menu item %1"_s.arg(action)));
    }

    ViewsFactory makeViews;
    Stores stores{{ServiceID::claude}};
    Platform platform;
    FakeAppearance *appearance = nullptr;
    FakeStatusItem *item = nullptr;
    FakeNotificationCenter *center = nullptr;
    std::unique_ptr<KelvoApp> app;
};

QImage drawn(const QIcon &icon)
{
    return icon.pixmap(QSize(32, 32), 1.0).toImage();
}

QImage ring(RingState state, bool onDarkBar)
{
    return drawn(MenuBarIcon::image(state, onDarkBar));
}

} // namespace

class KelvoAppTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noViewIsMadeBeforeItIsNeeded()
    {
        Program program;
        program.stores.round({{ServiceID::claude, ServiceHealth::outage}}, u"Major outage"_s);
        program.stores.round();
        QVERIFY(program.item->isShown);
        QCOMPARE(told.made, 0);
    }

    void theFirstStartOpensTheOnboarding()
    {
        Program program(&makeFake, false);
        QCOMPARE(told.calls, QStringList{u"onboarding"_s});
    }

    void aClickOnTheRingTogglesThePopoverBesideIt()
    {
        Program program;
        program.item->place = {700, 2, 22, 22};
        program.item->click(QPoint(711, 13));
        QCOMPARE(told.calls, QStringList{u"toggle popover"_s});
        QCOMPARE(told.ring.rectangle, QRect(700, 2, 22, 22));
        QCOMPARE(told.ring.clicked, std::optional(QPoint(711, 13)));
    }

    void theMenuOpensPopoverAndSettings()
    {
        Program program;
        program.item->place = {700, 2, 22, 22};
        QStringList entries;
        for (const auto *action : program.item->menu->actions()) {
            entries.append(action->isSeparator() ? u"-"_s : action->text());
        }
        QCOMPARE(entries, (QStringList{u"Open Kelvo"_s, u"Settings…"_s, u"-"_s, u"Quit Kelvo"_s}));
        program.choose(u"Open Kelvo"_s);
        QCOMPARE(told.ring.rectangle, QRect(700, 2, 22, 22));
        program.choose(u"Settings…"_s);
        QCOMPARE(told.calls, (QStringList{u"popover"_s, u"settings"_s}));
    }

    void theViewsAreMadeOnce()
    {
        Program program;
        program.item->click();
        program.app->openPopover();
        program.app->openSettings();
        QCOMPARE(told.made, 1);
        QCOMPARE(told.calls.size(), 3);
    }

    void failedViewsAreMadeAgainAtTheNextNeed()
    {
        Program program(&makeNone, false);
        QCOMPARE(told.made, 1);
        program.item->click();
        program.choose(u"Settings…"_s);
        QCOMPARE(told.made, 3);
        const int icons = program.item->icons;
        program.stores.round({{ServiceID::claude, ServiceHealth::outage}}, u"Major outage"_s);
        QCOMPARE(program.item->icons, icons + 1);
        QCOMPARE(program.item->toolTip, u"Claude: Major outage"_s);
    }

    void theToolTipDoesNotCoverTheOpenPopover()
    {
        Program program;
        program.stores.round();
        QCOMPARE(program.item->toolTip, u"Claude: Operational"_s);
        program.stores.store.setPopoverIsOpen(true);
        QCOMPARE(program.item->toolTip, QString());
        program.stores.round({{ServiceID::claude, ServiceHealth::outage}}, u"Major outage"_s);
        QCOMPARE(program.item->toolTip, QString());
        program.stores.store.setPopoverIsOpen(false);
        QCOMPARE(program.item->toolTip, u"Claude: Major outage"_s);
    }

    void theToolTipNamesTheServiceAtTheTop()
    {
        Program program;
        program.stores.settings.setEnabledServices({ServiceID::claude, ServiceID::chatgpt});
        program.stores.round({{ServiceID::chatgpt, ServiceHealth::outage}}, u"Major outage"_s);
        QCOMPARE(program.item->toolTip, u"ChatGPT: Major outage"_s);
        program.stores.store.peek(ServiceID::claude);
        QCOMPARE(program.item->toolTip, u"Claude: Operational"_s);
        program.stores.settings.setEnabledServices({});
        program.stores.store.setPopoverIsOpen(false);
        QCOMPARE(program.item->toolTip, u"No service selected"_s);
    }

    void theTrayIsToldOfAToolTipOnlyWhenItChanges()
    {
        Program program;
        program.stores.round();
        const int before = program.item->toolTips;
        program.stores.round();
        program.stores.round();
        QCOMPARE(program.item->toolTips, before);
        program.stores.round({{ServiceID::claude, ServiceHealth::outage}}, u"Major outage"_s);
        QCOMPARE(program.item->toolTips, before + 1);
    }

    void theMenuQuitsWithoutViews()
    {
        Program program(&makeNone);
        program.item->click();
        QSignalSpy quit(qApp, &QCoreApplication::aboutToQuit);
        QTimer::singleShot(0, qApp, [&] { program.choose(u"Quit Kelvo"_s); });
        QCOMPARE(QCoreApplication::exec(), 0);
        QCOMPARE(quit.size(), 1);
    }

    void aMissingLibraryGivesNoViewsAndIsReportedOnce()
    {
        const auto *warning = "The windows cannot be opened: the library kelvo-views is missing or damaged";
        Program program(&loadViews);
        for (int i = 0; i < 2; ++i) {
            QTest::ignoreMessage(QtWarningMsg, warning);
            program.item->click();
            QVERIFY(program.item->isShown);
            QCOMPARE(program.center->titles(), QStringList{u"Kelvo cannot open its windows"_s});
            QCOMPARE(program.center->notifications.front().body,
                     u"Quit Kelvo and start it again. If that does not help, install it again."_s);
        }
    }

    void aViewThatCannotBeLoadedIsReportedOnce()
    {
        Program program(&makeFailing);
        program.item->click();
        program.choose(u"Settings…"_s);
        QCOMPARE(program.center->titles(), QStringList{u"Kelvo cannot open its windows"_s});
        QCOMPARE(told.made, 1);
    }

    void aFailureIsNotReportedWithoutANotificationService()
    {
        Program program(&makeNone);
        program.center->serves = false;
        program.item->click();
        QCOMPARE(program.center->titles(), QStringList());
    }

    void theRingIsHollowUntilTheProgramIsReady()
    {
        FakeStatusItem item;
        FakeAppearance appearance;
        KelvoApp::showFirstRing(item, appearance);
        QVERIFY(item.isShown);
        QCOMPARE(drawn(item.lastIcon), ring(RingState::inactive, false));
        appearance.dark = true;
        KelvoApp::showFirstRing(item, appearance);
        QCOMPARE(drawn(item.lastIcon), ring(RingState::inactive, true));
    }

    void theRingHasTheColoursForThePanel()
    {
        Program program;
        QCOMPARE(drawn(program.item->lastIcon), ring(RingState::inactive, false));
        program.stores.round();
        QCOMPARE(drawn(program.item->lastIcon), ring(RingState::available, false));
        program.appearance->setDark(true);
        QCOMPARE(drawn(program.item->lastIcon), ring(RingState::available, true));
    }

    void theRingChangesWhileThePopoverIsOpen()
    {
        Program program;
        program.stores.round();
        program.stores.store.setPopoverIsOpen(true);
        program.stores.round({{ServiceID::claude, ServiceHealth::outage}});
        QCOMPARE(drawn(program.item->lastIcon), ring(RingState::outage, false));
        program.stores.settings.setWatchOnThisMac(false);
        QCOMPARE(drawn(program.item->lastIcon), ring(RingState::inactive, false));
    }

    void theRingIsDrawnAgainOnlyWhenItChanges()
    {
        Program program;
        program.stores.round();
        const int icons = program.item->icons;
        program.stores.round();
        QCOMPARE(program.item->icons, icons);
    }
};

} // namespace kelvo

QTEST_MAIN(kelvo::KelvoAppTest)
#include "tst_kelvoapp.moc"
