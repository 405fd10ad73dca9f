#include "MonitorWorld.h"

#include <QTest>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto claude = ServiceID::claude;
constexpr auto chatgpt = ServiceID::chatgpt;
constexpr auto cursor = ServiceID::cursor;
constexpr auto gemini = ServiceID::gemini;

constexpr auto operational = ServiceHealth::operational;
constexpr auto degraded = ServiceHealth::degraded;
constexpr auto outage = ServiceHealth::outage;
constexpr auto unknown = ServiceHealth::unknown;

using Kind = FakeStatusChecks::Kind;
using Services = std::vector<ServiceID>;

/// A script that gives the same health for every service.
auto always(ServiceHealth health)
{
    return [health](ServiceID) { return std::optional(StatusReading{health, {}}); };
}

/// Advances to one millisecond before the end of `wait` and verifies that nothing is checked, then to its end and
/// verifies that a round begins.
#define QVERIFY_NEXT_ROUND_AFTER(world, wait)                                                                          \
    do {                                                                                                               \
        const auto before = (world).readCount();                                                                       \
        (world).clock.advance(std::chrono::milliseconds(wait) - 1ms);                                                  \
        QCOMPARE((world).readCount(), before);                                                                         \
        (world).clock.advance(1ms);                                                                                    \
        QVERIFY((world).readCount() > before);                                                                         \
    } while (false)

} // namespace

class StatusStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // When rounds begin.
    void theFirstRoundChecksEveryWatchedServiceAtOnceInOrder();
    void nothingIsCheckedWhileWatchingIsOffUntilTheNextRoundAfterItIsOn();
    void theWaitIsTheUsersInterval_data();
    void theWaitIsTheUsersInterval();
    void anAffectedServiceShortensTheWaitToTwentySeconds_data();
    void anAffectedServiceShortensTheWaitToTwentySeconds();
    void theWaitStartsWhenTheRoundHasEnded();
    void anUnwatchedAffectedServiceDoesNotShortenTheWait();
    void anUnknownHealthDoesNotShortenTheWait();
    void theWaitStaysShortThroughUnreadableRounds();
    void severalSettingsChangesInQuickSuccessionRestartOnce();
    void anySettingsChangeRestartsTheWait();
    void aNewIntervalAppliesToTheNextWait();
    void aRestartWithinARoundLeavesOneLoop();
    void aServiceAnsweringOutageAtOnceInTheFirstRoundShortensTheWait();
    void anOutageWithOutageAlertsOffRestartsTheWait();
    void restartPollingCanStartARoundAtOnce();
    void anImmediateRoundIgnoresSleep();
    void roundsContinueWithoutWatchedServices();
    void aDroppedCheckDoesNotEndTheRounds();

    // Sleep.
    void nothingIsCheckedDuringSleepAndEverythingAtWakeUp();
    void wakingUpChecksNothingWhileWatchingIsOff();
    void wakingAbortsWhatIsUnderWay();
    void aChangedNetworkIsCheckedOnceItHasSettled();
    void aChangedNetworkAbortsPendingChecksAtOnce();
    void severalChangesOfTheNetworkWithinTwoSecondsStartOneRound();
    void aChangedNetworkIsNotCheckedDuringSleep();
    void aChangedNetworkAbortsNothingDuringSleep();
    void aNetworkThatChangedBeforeSleepIsNotCheckedAgainAfterTheWakeUp();
    void aChangedNetworkIsNotCheckedWhileWatchingIsOff();
    void anAbortedConfirmationIsRepeatedAndRaisesOneAlert();

    // The clock.
    void theClockStopsWhileThePopoverIsClosed();
    void nowIsUpdatedWhenThePopoverOpensAndEverySecond();
    void openingTwiceStartsOneTimer();

    // Answers.
    void aNetworkFailureKeepsTheHealthAndRaisesNoAlert();
    void anUnreadableRoundWithinAnOutageDoesNotHideTheRecovery();
    void anUnconfirmedRecoveryIsProbedAgainEveryTwentySeconds();
    void outageAlertsAreTheUsersChoice_data();
    void outageAlertsAreTheUsersChoice();
    void aServiceAffectedAtTheStartRaisesAnAlert();
    void aChangeBetweenDegradedAndOutageRaisesNoAlert();
    void aRecoveryIsShownForTenMinutesFromTheAnswerOfTheProbe();
    void aNewOutageClearsTheRecovery();
    void theRecordIsStoredBeforeTheAlertIsSent();
    void aRecordIsStoredInOneStep();
    void aServiceTwiceInTheOrderIsCheckedTwiceAndAlertsOnce();
    void aServiceNoLongerWatchedKeepsItsRecord();
    void aCheckWithoutAnAnswerDoesNotDelayOthers();
    void answersApplyInTheOrderInWhichTheyArrive();
    void anUnreadableAnswerDoesNotDelayOthers();
    void twoChecksThatBothSeeTheRecoveryAlertOnce();
    void aRecoveryIsJudgedAgainstTheRecordAtTheAnswerOfTheProbe();

    // The hero and the popover.
    void theHeroIsInitiallyThePrimaryService();
    void theFirstAffectedServiceInOrderIsPromoted();
    void aRecoveredServiceIsPromotedForTenMinutes();
    void theHeroStaysWhileThePopoverIsOpenAndChangesWhenItCloses();
    void peekingShowsAServiceAndPeekingAgainEndsIt();
    void closingEndsThePeekAndPromotes();
    void onlyAnAffectedHeroOtherThanThePrimaryCountsAsPromoted();
    void thereIsNoHeroWithoutAPrimaryService();
    void theHeroFollowsTheUsersOrderWhileThePopoverIsClosed();
    void aHeroWithAnUnconfirmedRecoveryReadsRecovering();
    void theTextsNameTwoAffectedServices();
    void theTextsFollowThePeekedService();
    void aNewPrimaryServiceDuringTroubleIsNotTheHero();
    void theRingIsInactiveWhileWatchingIsOff();
    void noRoundPromotesTheHeroWhileWatchingIsOff();
    void everythingReadsCheckingBeforeTheFirstAnswer();
    void backToNormalIsShownForTenMinutes();
    void everyWriteIsPublishedBeforeAndNotifiedAfter();

    // Destruction.
    void destroyingTheStoreDuringACheckLeavesNothingPending_data();
    void destroyingTheStoreDuringACheckLeavesNothingPending();
};

void StatusStoreTest::theFirstRoundChecksEveryWatchedServiceAtOnceInOrder()
{
    MonitorWorld world({gemini, claude, cursor});
    world.start();
    QVERIFY(world.checks.reads() == (Services{gemini, claude, cursor}));
    QVERIFY(world.store->statuses().isEmpty());
    world.checks.answerAll(operational);
    QCOMPARE(world.store->statuses().size(), 3);
    QVERIFY(world.store->status(cursor).lastChecked == world.clock.now());
}

void StatusStoreTest::nothingIsCheckedWhileWatchingIsOffUntilTheNextRoundAfterItIsOn()
{
    MonitorWorld world;
    world.settings.setWatchOnThisMac(false);
    world.start();
    world.clock.advance(3h + 7s);
    QCOMPARE(world.readCount(), 0);
    QVERIFY(world.store->statuses().isEmpty());

    world.settings.setWatchOnThisMac(true);
    QVERIFY_NEXT_ROUND_AFTER(world, 300ms + 60s);
}

void StatusStoreTest::theWaitIsTheUsersInterval_data()
{
    QTest::addColumn<CheckInterval>("interval");
    QTest::addColumn<std::chrono::seconds>("wait");
    QTest::newRow("one minute") << CheckInterval::oneMinute << 60s;
    QTest::newRow("five minutes") << CheckInterval::fiveMinutes << 300s;
}

void StatusStoreTest::theWaitIsTheUsersInterval()
{
    QFETCH(CheckInterval, interval);
    QFETCH(std::chrono::seconds, wait);
    MonitorWorld world;
    world.settings.setCheckInterval(interval);
    world.startWith(operational);
    for (const auto told : {operational, unknown, operational}) {
        QVERIFY_NEXT_ROUND_AFTER(world, wait);
        world.checks.answerAll(told);
    }
}

void StatusStoreTest::anAffectedServiceShortensTheWaitToTwentySeconds_data()
{
    QTest::addColumn<ServiceHealth>("trouble");
    QTest::newRow("degraded") << degraded;
    QTest::newRow("outage") << outage;
}

void StatusStoreTest::anAffectedServiceShortensTheWaitToTwentySeconds()
{
    QFETCH(ServiceHealth, trouble);
    MonitorWorld world({claude, chatgpt});
    world.settings.setCheckInterval(CheckInterval::fiveMinutes);
    world.startWith(operational);
    QVERIFY(!world.store->anyOutage());
    QVERIFY_NEXT_ROUND_AFTER(world, 300s);
    world.checks.answer(claude, operational);
    world.checks.answer(chatgpt, trouble);
    QVERIFY(world.store->anyOutage());
    for (int round = 0; round < 3; ++round) {
        QVERIFY_NEXT_ROUND_AFTER(world, 20s);
        world.checks.answer(claude, operational);
        world.checks.answer(chatgpt, trouble);
    }
    QVERIFY_NEXT_ROUND_AFTER(world, 20s);
    world.checks.answerAll(operational);
    world.checks.answerProbe(chatgpt, true);
    QVERIFY(!world.store->anyOutage());
    QVERIFY_NEXT_ROUND_AFTER(world, 300s);
}

void StatusStoreTest::theWaitStartsWhenTheRoundHasEnded()
{
    MonitorWorld world({claude, chatgpt});
    world.start();
    world.checks.answer(claude, operational);
    world.clock.advance(47s);
    world.checks.answer(chatgpt, operational);
    QVERIFY_NEXT_ROUND_AFTER(world, 60s);
}

void StatusStoreTest::anUnwatchedAffectedServiceDoesNotShortenTheWait()
{
    MonitorWorld world({claude, chatgpt});
    world.start();
    world.checks.answer(claude, operational);
    world.checks.answer(chatgpt, outage);
    world.watch({claude});
    QVERIFY(world.store->status(chatgpt).health == outage);
    QVERIFY(!world.store->anyOutage());
    QVERIFY_NEXT_ROUND_AFTER(world, 300ms + 60s);
    world.checks.answerAll(operational);
    QVERIFY_NEXT_ROUND_AFTER(world, 60s);
}

void StatusStoreTest::anUnknownHealthDoesNotShortenTheWait()
{
    MonitorWorld world({claude, chatgpt});
    world.startWith(unknown);
    QVERIFY(!world.store->anyOutage());
    QVERIFY_NEXT_ROUND_AFTER(world, 60s);
}

void StatusStoreTest::theWaitStaysShortThroughUnreadableRounds()
{
    MonitorWorld world;
    world.startWith(outage);
    for (int round = 0; round < 3; ++round) {
        QVERIFY_NEXT_ROUND_AFTER(world, 20s);
        world.checks.answerAll(unknown);
    }
}

void StatusStoreTest::severalSettingsChangesInQuickSuccessionRestartOnce()
{
    MonitorWorld world;
    world.startWith(operational);
    world.clock.advance(30s);
    const auto fired = world.clock.firedCount();
    for (int change = 0; change < 5; ++change) {
        world.settings.setTelegramChatID(QString::number(change));
        world.clock.advance(299ms);
        QCOMPARE(world.clock.firedCount(), fired);
    }
    world.clock.advance(1ms);
    QCOMPARE(world.clock.firedCount(), fired + 1);
    QCOMPARE(world.clock.pendingCount(), 1U);
    QVERIFY_NEXT_ROUND_AFTER(world, 60s);
}

void StatusStoreTest::anySettingsChangeRestartsTheWait()
{
    MonitorWorld world;
    world.startWith(operational);
    world.clock.advance(59s);
    world.settings.setSlackChannelLabel(u"#kelvo"_s);
    QVERIFY_NEXT_ROUND_AFTER(world, 300ms + 60s);
    QCOMPARE(world.readCount(), 2);
}

void StatusStoreTest::aNewIntervalAppliesToTheNextWait()
{
    MonitorWorld world;
    world.settings.setCheckInterval(CheckInterval::fiveMinutes);
    world.startWith(operational);
    world.clock.advance(10s);
    world.settings.setCheckInterval(CheckInterval::oneMinute);
    QVERIFY_NEXT_ROUND_AFTER(world, 300ms + 60s);
}

void StatusStoreTest::aRestartWithinARoundLeavesOneLoop()
{
    MonitorWorld world({claude, chatgpt});
    world.startWith(operational);
    world.clock.advance(60s);
    world.checks.answer(claude, outage);
    QVERIFY_NEXT_ROUND_AFTER(world, 20s);
    QCOMPARE(world.readCount(), 6);

    // The end of the first of the two overlapping rounds does not start a wait.
    world.checks.answer(chatgpt, operational);
    QCOMPARE(world.clock.pendingCount(), 0U);
    world.checks.answer(claude, outage);
    world.checks.answer(chatgpt, operational);
    QCOMPARE(world.clock.pendingCount(), 1U);
    QVERIFY_NEXT_ROUND_AFTER(world, 20s);
    QCOMPARE(world.readCount(), 8);
}

void StatusStoreTest::aServiceAnsweringOutageAtOnceInTheFirstRoundShortensTheWait()
{
    MonitorWorld world({claude, chatgpt});
    world.checks.readScript = [](ServiceID id) {
        return id == claude ? std::optional(StatusReading{outage, {}}) : std::nullopt;
    };
    world.start();
    QVERIFY_NEXT_ROUND_AFTER(world, 20s);
}

void StatusStoreTest::anOutageWithOutageAlertsOffRestartsTheWait()
{
    MonitorWorld world;
    world.settings.setCheckInterval(CheckInterval::fiveMinutes);
    world.startWith(operational);
    world.clock.advance(100s);
    // A check outside of the loop, as when the popover opens.
    world.store->checkAll();
    world.checks.answer(claude, degraded);
    QVERIFY(world.alerts().isEmpty());
    QVERIFY_NEXT_ROUND_AFTER(world, 20s);
}

void StatusStoreTest::restartPollingCanStartARoundAtOnce()
{
    MonitorWorld world;
    world.startWith(operational);
    world.clock.advance(10s);
    world.store->restartPolling(true);
    QCOMPARE(world.readCount(), 2);
    QCOMPARE(world.clock.pendingCount(), 0U);
    world.clock.advance(5s);
    world.checks.answerAll(operational);
    QVERIFY_NEXT_ROUND_AFTER(world, 60s);
}

void StatusStoreTest::anImmediateRoundIgnoresSleep()
{
    MonitorWorld world;
    world.startWith(operational);
    world.sleepWake.sleep();
    world.store->restartPolling(true);
    QCOMPARE(world.readCount(), 2);
}

void StatusStoreTest::roundsContinueWithoutWatchedServices()
{
    MonitorWorld world;
    world.watch({});
    world.start();
    QVERIFY(!world.store->heroID());
    world.clock.advance(600s);
    QCOMPARE(world.clock.firedCount(), 10U);
    QCOMPARE(world.readCount(), 0);
    world.watch({cursor});
    QVERIFY_NEXT_ROUND_AFTER(world, 300ms + 60s);
    world.checks.answerAll(operational);
    QVERIFY(world.store->heroID() == cursor);
}

void StatusStoreTest::aDroppedCheckDoesNotEndTheRounds()
{
    MonitorWorld world({claude, chatgpt});
    world.start();
    world.checks.drop(world.checks.open(Kind::read).front());
    world.checks.answer(chatgpt, outage);
    QVERIFY(!world.store->statuses().contains(claude));
    QVERIFY_NEXT_ROUND_AFTER(world, 20s);
    world.checks.answerAll(operational);
    world.checks.drop(world.checks.open(Kind::probe).front());
    QCOMPARE(world.health(chatgpt), outage);
    QVERIFY_NEXT_ROUND_AFTER(world, 20s);
}

void StatusStoreTest::nothingIsCheckedDuringSleepAndEverythingAtWakeUp()
{
    MonitorWorld world({claude, chatgpt});
    world.startWith(operational);
    world.clock.advance(30s);
    world.sleepWake.sleep();
    world.clock.advance(10min);
    QCOMPARE(world.readCount(), 2);
    world.sleepWake.wake();
    QCOMPARE(world.readCount(), 4);
    world.checks.answerAll(operational);
    // The loop kept its schedule: rounds were due 60 s, 120 s, … after the start.
    QVERIFY_NEXT_ROUND_AFTER(world, 30s);
    QCOMPARE(world.readCount(), 6);
}

void StatusStoreTest::wakingUpChecksNothingWhileWatchingIsOff()
{
    MonitorWorld world;
    world.settings.setWatchOnThisMac(false);
    world.start();
    world.sleepWake.sleep();
    world.sleepWake.wake();
    QCOMPARE(world.readCount(), 0);
}

void StatusStoreTest::wakingAbortsWhatIsUnderWay()
{
    MonitorWorld world({claude, chatgpt});
    world.start();
    const auto stale = world.checks.open(Kind::read);
    world.sleepWake.sleep();
    world.sleepWake.wake();
    QCOMPARE(world.checks.abortCount(), 1);
    for (const auto question : stale) {
        QVERIFY(!world.checks.isOpen(question));
    }
    QCOMPARE(world.checks.open(Kind::read).size(), 2U);
}

void StatusStoreTest::aChangedNetworkIsCheckedOnceItHasSettled()
{
    MonitorWorld world;
    world.startWith(operational);
    world.clock.advance(30s);
    world.networkWatch.change();
    world.clock.advance(1999ms);
    QCOMPARE(world.readCount(), 1);
    world.clock.advance(1ms);
    QCOMPARE(world.readCount(), 2);
    world.checks.answerAll(operational);
    // The loop has kept its rhythm.
    QVERIFY_NEXT_ROUND_AFTER(world, 28s);
    world.checks.answerAll(operational);
    world.clock.advance(10s);
    world.networkWatch.change();
    QVERIFY_NEXT_ROUND_AFTER(world, 2s);
}

void StatusStoreTest::aChangedNetworkAbortsPendingChecksAtOnce()
{
    MonitorWorld world;
    world.startWith(operational);
    world.clock.advance(60s);
    QCOMPARE(world.checks.open(Kind::read).size(), 1U);
    world.networkWatch.change();
    QVERIFY(world.checks.open(Kind::read).empty());
    QCOMPARE(world.health(claude), operational);
    QVERIFY(world.alerts().isEmpty());
}

void StatusStoreTest::severalChangesOfTheNetworkWithinTwoSecondsStartOneRound()
{
    MonitorWorld world;
    world.startWith(operational);
    for (int change = 0; change < 4; ++change) {
        world.networkWatch.change();
        world.clock.advance(500ms);
    }
    QCOMPARE(world.readCount(), 2);
    world.checks.answerAll(operational);
    world.clock.advance(10s);
    QCOMPARE(world.readCount(), 2);
}

void StatusStoreTest::aChangedNetworkIsNotCheckedDuringSleep()
{
    MonitorWorld world;
    world.startWith(operational);
    world.networkWatch.change();
    world.sleepWake.sleep();
    world.clock.advance(2s);
    world.networkWatch.change();
    world.clock.advance(10s);
    QCOMPARE(world.readCount(), 1);
    world.networkWatch.change();
    world.sleepWake.wake();
    QCOMPARE(world.readCount(), 2);
    world.clock.advance(10s);
    QCOMPARE(world.readCount(), 2);
    world.networkWatch.change();
    world.clock.advance(2s);
    QCOMPARE(world.readCount(), 3);
}

void StatusStoreTest::aChangedNetworkAbortsNothingDuringSleep()
{
    MonitorWorld world;
    world.startWith(operational);
    world.sleepWake.sleep();
    const auto timers = world.clock.pendingCount();
    world.networkWatch.change();
    QCOMPARE(world.checks.abortCount(), 0);
    QCOMPARE(world.clock.pendingCount(), timers);
}

void StatusStoreTest::aNetworkThatChangedBeforeSleepIsNotCheckedAgainAfterTheWakeUp()
{
    MonitorWorld world;
    world.startWith(operational);
    world.networkWatch.change();
    world.clock.advance(1s);
    world.sleepWake.sleep();
    world.sleepWake.wake();
    QCOMPARE(world.readCount(), 2);
    world.checks.answerAll(operational);
    world.clock.advance(10s);
    QCOMPARE(world.readCount(), 2);
}

void StatusStoreTest::aChangedNetworkIsNotCheckedWhileWatchingIsOff()
{
    MonitorWorld world;
    world.startWith(operational);
    world.settings.setWatchOnThisMac(false);
    world.networkWatch.change();
    world.clock.advance(10s);
    QCOMPARE(world.readCount(), 1);
    QCOMPARE(world.checks.abortCount(), 0);
}

void StatusStoreTest::anAbortedConfirmationIsRepeatedAndRaisesOneAlert()
{
    MonitorWorld world;
    world.startWith(outage);
    world.clock.advance(20s);
    world.checks.answerAll(operational);
    QCOMPARE(world.probeCount(), 1);
    world.networkWatch.change();
    QCOMPARE(world.health(claude), degraded);
    QCOMPARE(world.label(claude), u"Recovering"_s);
    world.clock.advance(2s);
    world.checks.answerAll(operational);
    QCOMPARE(world.probeCount(), 2);
    QVERIFY(world.alerts().isEmpty());
    world.checks.answerProbe(claude, true);
    QCOMPARE(world.alerts(), QStringList{u"Claude is back"_s});
}

void StatusStoreTest::theClockStopsWhileThePopoverIsClosed()
{
    MonitorWorld world;
    world.checks.readScript = always(operational);
    world.start();
    QCOMPARE(world.clock.pendingCount(), 1U);
    world.clock.advance(1h);
    QCOMPARE(world.clock.firedCount(), 60U);

    world.store->setPopoverIsOpen(true);
    QCOMPARE(world.clock.pendingCount(), 2U);
    world.clock.advance(10s);
    QCOMPARE(world.clock.firedCount(), 70U);
    world.store->setPopoverIsOpen(false);
    QCOMPARE(world.clock.pendingCount(), 1U);
    world.clock.advance(49s);
    QCOMPARE(world.clock.firedCount(), 70U);
}

void StatusStoreTest::nowIsUpdatedWhenThePopoverOpensAndEverySecond()
{
    MonitorWorld world;
    world.checks.readScript = always(operational);
    world.start();
    const auto start = world.clock.now();
    QVERIFY(world.store->now() == start);
    world.clock.advance(90s + 500ms);
    QVERIFY(world.store->now() == start);

    const auto opened = world.clock.now();
    world.store->setPopoverIsOpen(true);
    QVERIFY(world.store->now() == opened);
    int ticks = 0;
    connect(world.store.get(), &StatusStore::nowChanged, this, [&ticks] { ++ticks; });
    for (int second = 1; second <= 5; ++second) {
        world.clock.advance(999ms);
        QVERIFY(world.store->now() == opened + std::chrono::seconds(second - 1));
        world.clock.advance(1ms);
        QVERIFY(world.store->now() == opened + std::chrono::seconds(second));
    }
    QCOMPARE(ticks, 5);

    world.clock.stepWallClock(-1h);
    world.clock.advance(1s);
    QVERIFY(world.store->now() == opened + 6s - 1h);
}

void StatusStoreTest::openingTwiceStartsOneTimer()
{
    MonitorWorld world;
    world.startWith(operational);
    world.store->setPopoverIsOpen(true);
    world.store->setPopoverIsOpen(true);
    QCOMPARE(world.clock.pendingCount(), 2U);
    world.clock.advance(3s);
    QCOMPARE(world.clock.firedCount(), 3U);
    world.store->setPopoverIsOpen(false);
    QCOMPARE(world.clock.pendingCount(), 1U);
}

void StatusStoreTest::aNetworkFailureKeepsTheHealthAndRaisesNoAlert()
{
    MonitorWorld world;
    world.settings.setOutageAlertsEnabled(true);
    world.start();
    world.checks.answer(claude, operational, u"All systems operational"_s);
    world.clock.advance(60s);
    world.checks.answer(claude, unknown, u"Couldn’t reach status"_s);
    QVERIFY(world.store->status(claude)
            == (ServiceStatus{operational, world.clock.now(), u"Couldn’t reach status"_s, std::nullopt}));
    QVERIFY(world.alerts().isEmpty());
}

void StatusStoreTest::anUnreadableRoundWithinAnOutageDoesNotHideTheRecovery()
{
    MonitorWorld world;
    world.startWith(outage);
    world.clock.advance(20s);
    world.checks.answer(claude, unknown, u"Couldn’t reach status"_s);
    QCOMPARE(world.health(claude), outage);
    QCOMPARE(world.label(claude), u"Couldn’t reach status"_s);
    QCOMPARE(world.probeCount(), 0);
    world.clock.advance(20s);
    world.checks.answer(claude, operational);
    QVERIFY(world.alerts().isEmpty());
    world.checks.answerProbe(claude, true);
    QCOMPARE(world.alerts(), QStringList{u"Claude is back"_s});
    QCOMPARE(world.center.notifications.front().body, u"You can continue working."_s);
}

void StatusStoreTest::anUnconfirmedRecoveryIsProbedAgainEveryTwentySeconds()
{
    MonitorWorld world;
    world.startWith(outage);
    for (int round = 1; round <= 3; ++round) {
        QVERIFY_NEXT_ROUND_AFTER(world, 20s);
        world.checks.answer(claude, operational, u"All systems operational"_s);
        QCOMPARE(world.probeCount(), round);
        world.checks.answerProbe(claude, false);
        QCOMPARE(world.health(claude), degraded);
        QCOMPARE(world.label(claude), u"Recovering"_s);
        QVERIFY(world.alerts().isEmpty());
    }
    QVERIFY_NEXT_ROUND_AFTER(world, 20s);
    world.checks.answer(claude, operational, u"All systems operational"_s);
    world.checks.answerProbe(claude, true);
    QCOMPARE(world.health(claude), operational);
    QCOMPARE(world.label(claude), u"All systems operational"_s);
    QCOMPARE(world.alerts(), QStringList{u"Claude is back"_s});
}

void StatusStoreTest::outageAlertsAreTheUsersChoice_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QStringList>("alerts");
    QTest::newRow("on") << true << QStringList{u"Claude is down"_s, u"Claude is back"_s};
    QTest::newRow("off") << false << QStringList{u"Claude is back"_s};
}

void StatusStoreTest::outageAlertsAreTheUsersChoice()
{
    QFETCH(bool, enabled);
    QFETCH(QStringList, alerts);
    MonitorWorld world;
    world.settings.setOutageAlertsEnabled(enabled);
    world.startWith(operational);
    world.clock.advance(60s);
    world.checks.answerAll(degraded);
    world.clock.advance(20s);
    world.checks.answerAll(operational);
    world.checks.answerProbe(claude, true);
    QCOMPARE(world.alerts(), alerts);
    if (enabled) {
        QCOMPARE(world.center.notifications.front().body, u"We’ll notify you when it’s back."_s);
    }
}

void StatusStoreTest::aServiceAffectedAtTheStartRaisesAnAlert()
{
    MonitorWorld world;
    world.settings.setOutageAlertsEnabled(true);
    world.startWith(degraded);
    QCOMPARE(world.alerts(), QStringList{u"Claude is down"_s});
}

void StatusStoreTest::aChangeBetweenDegradedAndOutageRaisesNoAlert()
{
    MonitorWorld world;
    world.settings.setOutageAlertsEnabled(true);
    world.startWith(outage);
    for (const auto health : {degraded, outage, outage, degraded}) {
        world.clock.advance(20s);
        world.checks.answerAll(health);
        QCOMPARE(world.health(claude), health);
    }
    QCOMPARE(world.alerts().size(), 1);
}

void StatusStoreTest::aRecoveryIsShownForTenMinutesFromTheAnswerOfTheProbe()
{
    MonitorWorld world;
    world.startWith(outage);
    world.clock.advance(20s);
    world.checks.answerAll(operational);
    world.clock.advance(9s);
    world.checks.answerProbe(claude, true);
    QVERIFY(world.store->status(claude).recoveredUntil == world.clock.now() + 600s);
    QVERIFY(world.store->status(claude).lastChecked == world.clock.now());
    const auto until = world.store->status(claude).recoveredUntil;
    world.clock.advance(60s);
    world.checks.answerAll(operational);
    QVERIFY(world.store->status(claude).recoveredUntil == until);
}

void StatusStoreTest::aNewOutageClearsTheRecovery()
{
    MonitorWorld world;
    world.startWith(outage);
    world.clock.advance(20s);
    world.checks.answerAll(operational);
    world.checks.answerProbe(claude, true);
    world.clock.advance(60s);
    world.checks.answerAll(degraded);
    QVERIFY(!world.store->status(claude).recoveredUntil);
    world.clock.advance(20s);
    world.checks.answerAll(operational);
    world.checks.answerProbe(claude, true);
    QCOMPARE(world.alerts().size(), 2);
}

void StatusStoreTest::theRecordIsStoredBeforeTheAlertIsSent()
{
    MonitorWorld world;
    world.settings.setOutageAlertsEnabled(true);
    std::vector<ServiceHealth> stored;
    world.center.onAdd = [&](const LocalNotification &) { stored.push_back(world.health(claude)); };
    world.startWith(operational);
    world.clock.advance(60s);
    world.checks.answerAll(outage);
    world.clock.advance(20s);
    world.checks.answerAll(operational);
    world.checks.answerProbe(claude, true);
    QVERIFY(stored == (std::vector{outage, operational}));
}

void StatusStoreTest::aRecordIsStoredInOneStep()
{
    MonitorWorld world;
    world.start();
    int changes = 0;
    connect(world.store.get(), &StatusStore::statusesChanged, this, [&changes] { ++changes; });
    world.checks.answerAll(outage);
    QCOMPARE(changes, 1);
    world.clock.advance(20s);
    world.checks.answerAll(operational);
    QCOMPARE(changes, 1);
    world.checks.answerProbe(claude, true);
    QCOMPARE(changes, 2);
}

void StatusStoreTest::aServiceTwiceInTheOrderIsCheckedTwiceAndAlertsOnce()
{
    MonitorWorld world;
    world.settings.setOutageAlertsEnabled(true);
    world.settings.setServiceOrder({claude, cursor, claude});
    world.startWith(outage);
    QVERIFY(world.checks.reads() == (Services{claude, claude}));
    world.clock.advance(20s);
    world.checks.answerAll(operational);
    QCOMPARE(world.probeCount(), 2);
    world.checks.answerProbe(claude, true);
    world.checks.answerProbe(claude, true);
    QCOMPARE(world.alerts(), (QStringList{u"Claude is down"_s, u"Claude is back"_s}));
}

void StatusStoreTest::aServiceNoLongerWatchedKeepsItsRecord()
{
    MonitorWorld world({claude, chatgpt});
    world.startWith(operational);
    const auto last = world.store->status(chatgpt);
    world.watch({claude});
    world.clock.advance(300ms + 60s);
    world.checks.answerAll(outage);
    QVERIFY(world.store->status(chatgpt) == last);
    QCOMPARE(world.store->statuses().size(), 2);
    world.watch({gemini});
    world.clock.advance(300ms + 60s);
    world.checks.answerAll(operational);
    QCOMPARE(world.store->statuses().size(), 3);
    QVERIFY(world.store->status(cursor) == ServiceStatus{});
}

void StatusStoreTest::aCheckWithoutAnAnswerDoesNotDelayOthers()
{
    MonitorWorld world({claude, chatgpt, cursor});
    world.settings.setOutageAlertsEnabled(true);
    world.startWith(outage);
    world.clock.advance(20s);
    world.checks.answer(cursor, operational);
    world.checks.answerProbe(cursor, true);
    QCOMPARE(world.alerts().back(), u"Cursor is back"_s);
    world.checks.answer(claude, operational);
    world.checks.answerProbe(claude, true);
    QCOMPARE(world.alerts().back(), u"Claude is back"_s);
    // Waking up checks all services again, even if earlier checks are still open.
    world.sleepWake.wake();
    QCOMPARE(world.readCount(), 9);
    world.checks.answer(cursor, degraded);
    QCOMPARE(world.alerts().back(), u"Cursor is down"_s);
}

void StatusStoreTest::answersApplyInTheOrderInWhichTheyArrive()
{
    MonitorWorld world;
    world.settings.setOutageAlertsEnabled(true);
    world.startWith(operational);
    world.store->checkAll();
    world.store->checkAll();
    const auto open = world.checks.open(Kind::read);
    world.checks.answerRead(open[1], {operational, u"began last"_s});
    world.clock.advance(1s);
    world.checks.answerRead(open[0], {outage, u"arrived last"_s});
    QCOMPARE(world.health(claude), outage);
    QCOMPARE(world.label(claude), u"arrived last"_s);
    QVERIFY(world.store->status(claude).lastChecked == world.clock.now());
    QCOMPARE(world.alerts(), QStringList{u"Claude is down"_s});
}

void StatusStoreTest::anUnreadableAnswerDoesNotDelayOthers()
{
    MonitorWorld world;
    world.settings.setOutageAlertsEnabled(true);
    world.startWith(operational);
    world.store->checkAll();
    world.store->checkAll();
    const auto open = world.checks.open(Kind::read);
    world.checks.answerRead(open[1], {unknown, u"newer"_s});
    world.checks.answerRead(open[0], {outage, u"older"_s});
    QCOMPARE(world.health(claude), outage);
    QCOMPARE(world.alerts(), QStringList{u"Claude is down"_s});
}

void StatusStoreTest::twoChecksThatBothSeeTheRecoveryAlertOnce()
{
    MonitorWorld world;
    world.startWith(outage);
    world.store->checkAll();
    world.store->checkAll();
    world.checks.answerAll(operational);
    QCOMPARE(world.probeCount(), 2);
    world.checks.answerProbe(claude, true);
    world.checks.answerProbe(claude, true);
    QCOMPARE(world.alerts(), QStringList{u"Claude is back"_s});
    QCOMPARE(world.health(claude), operational);
}

void StatusStoreTest::aRecoveryIsJudgedAgainstTheRecordAtTheAnswerOfTheProbe()
{
    MonitorWorld world;
    world.settings.setOutageAlertsEnabled(true);
    world.startWith(degraded);
    world.store->checkAll();
    world.checks.answer(claude, operational);
    world.store->checkAll();
    world.checks.answer(claude, outage);
    QCOMPARE(world.health(claude), outage);
    world.checks.answerProbe(claude, true);
    QCOMPARE(world.health(claude), operational);
    QCOMPARE(world.alerts(), (QStringList{u"Claude is down"_s, u"Claude is back"_s}));
}

void StatusStoreTest::theHeroIsInitiallyThePrimaryService()
{
    MonitorWorld world({cursor, claude});
    world.start();
    QVERIFY(world.store->heroID() == cursor);
    QVERIFY(world.store->hero()->id == cursor);
}

void StatusStoreTest::theFirstAffectedServiceInOrderIsPromoted()
{
    MonitorWorld world({claude, chatgpt, cursor});
    world.start();
    world.checks.answer(cursor, degraded);
    world.checks.answer(chatgpt, outage);
    QVERIFY(world.store->heroID() == claude); // the round has not ended
    world.checks.answer(claude, operational);
    QVERIFY(world.store->heroID() == chatgpt);
    QVERIFY(world.store->heroIsPromoted());
}

void StatusStoreTest::aRecoveredServiceIsPromotedForTenMinutes()
{
    MonitorWorld world({claude, chatgpt, cursor});
    world.start();
    world.checks.answer(claude, operational);
    world.checks.answer(chatgpt, unknown);
    world.checks.answer(cursor, outage);
    world.checks.readScript = always(operational);
    world.checks.probeScript = [](ServiceID) { return std::optional(true); };
    world.clock.advance(20s);
    QVERIFY(world.store->heroID() == cursor);
    QVERIFY(!world.store->heroIsPromoted());
    world.clock.advance(9min);
    QVERIFY(world.store->heroID() == cursor);
    world.clock.advance(1min);
    QVERIFY(world.store->heroID() == claude);
}

void StatusStoreTest::theHeroStaysWhileThePopoverIsOpenAndChangesWhenItCloses()
{
    MonitorWorld world({claude, chatgpt});
    world.startWith(operational);
    world.store->setPopoverIsOpen(true);
    QVERIFY(world.store->popoverIsOpen());
    world.clock.advance(60s);
    world.checks.answer(claude, operational);
    world.checks.answer(chatgpt, outage);
    QVERIFY(world.store->heroID() == claude);
    QCOMPARE(world.store->groupHeading(), u"Also affected"_s);
    world.store->setPopoverIsOpen(false);
    QVERIFY(!world.store->popoverIsOpen());
    QVERIFY(world.store->heroID() == chatgpt);
}

void StatusStoreTest::peekingShowsAServiceAndPeekingAgainEndsIt()
{
    MonitorWorld world({claude, chatgpt, cursor});
    world.startWith(operational);
    world.store->setPopoverIsOpen(true);
    world.store->peek(cursor);
    QVERIFY(world.store->peekedID() == cursor);
    QVERIFY(world.store->hero()->id == cursor);
    QVERIFY(world.store->groupRows() == (std::vector{Service::by(claude), Service::by(chatgpt)}));
    QVERIFY(!world.store->heroIsPromoted());
    world.store->peek(chatgpt);
    QVERIFY(world.store->hero()->id == chatgpt);
    world.store->peek(chatgpt);
    QVERIFY(!world.store->peekedID());
    QVERIFY(world.store->hero()->id == claude);
    QVERIFY(world.store->groupRows() == (std::vector{Service::by(chatgpt), Service::by(cursor)}));
}

void StatusStoreTest::closingEndsThePeekAndPromotes()
{
    MonitorWorld world({claude, chatgpt, cursor});
    world.startWith(operational);
    world.store->setPopoverIsOpen(true);
    world.store->peek(cursor);
    world.store->checkAll();
    world.checks.answer(claude, operational);
    world.checks.answer(chatgpt, degraded);
    world.checks.answer(cursor, operational);
    QVERIFY(world.store->hero()->id == cursor);
    world.store->setPopoverIsOpen(false);
    QVERIFY(!world.store->peekedID());
    QVERIFY(world.store->hero()->id == chatgpt);
}

void StatusStoreTest::onlyAnAffectedHeroOtherThanThePrimaryCountsAsPromoted()
{
    MonitorWorld world({claude, chatgpt});
    world.startWith(operational);
    QVERIFY(!world.store->heroIsPromoted());
    world.clock.advance(60s);
    world.checks.answerAll(outage);
    QVERIFY(world.store->hero()->id == claude);
    QVERIFY(!world.store->heroIsPromoted());
    world.store->peek(chatgpt);
    QVERIFY(world.store->heroIsPromoted());
    world.watch({});
    QVERIFY(!world.store->heroIsPromoted());
}

void StatusStoreTest::thereIsNoHeroWithoutAPrimaryService()
{
    MonitorWorld world;
    world.watch({});
    world.start();
    world.store->setPopoverIsOpen(false);
    QVERIFY(!world.store->hero());
    QVERIFY(!world.store->heroIsPromoted());
    QCOMPARE(world.store->heroStatusLabel(), u"No service selected"_s);
    QCOMPARE(world.store->heroBodyLine(), u"Choose a service in Settings."_s);
    QCOMPARE(world.store->groupHeading(), u"Watching"_s);
    // Services that are enabled while the popover is open: none of them becomes the hero yet, so the primary service is
    // shown.
    world.store->setPopoverIsOpen(true);
    world.watch({cursor, claude});
    QVERIFY(!world.store->heroID());
    QVERIFY(world.store->hero()->id == cursor);
    QVERIFY(world.store->groupRows() == std::vector{Service::by(claude)});
}

void StatusStoreTest::theHeroFollowsTheUsersOrderWhileThePopoverIsClosed()
{
    MonitorWorld world({claude, cursor});
    world.startWith(operational);
    QVERIFY(world.store->heroID() == claude);
    world.settings.setPrimary(cursor);
    QVERIFY(world.store->heroID() == cursor);
    world.store->setPopoverIsOpen(true);
    world.settings.setPrimary(claude);
    QVERIFY(world.store->heroID() == cursor);
    world.store->setPopoverIsOpen(false);
    QVERIFY(world.store->heroID() == claude);
}

void StatusStoreTest::aHeroWithAnUnconfirmedRecoveryReadsRecovering()
{
    MonitorWorld world;
    world.startWith(outage);
    QCOMPARE(world.store->ringState(), RingState::outage);
    world.clock.advance(20s);
    world.checks.answerAll(operational);
    world.checks.answerProbe(claude, false);
    QCOMPARE(world.store->heroStatusLabel(), u"Recovering"_s);
    QCOMPARE(world.store->ringState(), RingState::recovering);
}

void StatusStoreTest::theTextsNameTwoAffectedServices()
{
    MonitorWorld world({claude, chatgpt, cursor});
    world.start();
    world.checks.answer(claude, outage);
    world.checks.answer(chatgpt, operational);
    world.checks.answer(cursor, degraded);
    QCOMPARE(world.store->heroBodyLine(), u"Cursor is affected too. We’ll tell you."_s);
    QCOMPARE(world.store->groupHeading(), u"Also affected"_s);
    QVERIFY(world.store->groupRows() == (std::vector{Service::by(chatgpt), Service::by(cursor)}));
}

void StatusStoreTest::theTextsFollowThePeekedService()
{
    MonitorWorld world({claude, chatgpt, cursor});
    world.start();
    world.checks.answer(claude, outage);
    world.checks.answer(chatgpt, operational);
    world.checks.answer(cursor, degraded, u"Slow"_s);
    world.store->setPopoverIsOpen(true);
    world.store->peek(cursor);
    QCOMPARE(world.store->heroStatusLabel(), u"Slow"_s);
    QCOMPARE(world.store->heroBodyLine(), u"Claude is affected too. We’ll tell you."_s);
    QCOMPARE(world.store->groupHeading(), u"Also affected"_s);
    QVERIFY(world.store->heroIsPromoted());

    // Only the service at which the user peeks is affected.
    world.clock.advance(20s);
    world.checks.answer(claude, operational);
    world.checks.answerProbe(claude, true);
    QCOMPARE(world.store->heroBodyLine(), u"We’ll notify you when it’s back."_s);
    QCOMPARE(world.store->groupHeading(), u"Still working"_s);
    world.store->peek(chatgpt);
    QCOMPARE(world.store->heroBodyLine(), u"Everything is working normally."_s);
    QCOMPARE(world.store->groupHeading(), u"Also affected"_s);
    QVERIFY(!world.store->heroIsPromoted());
}

void StatusStoreTest::aNewPrimaryServiceDuringTroubleIsNotTheHero()
{
    MonitorWorld world({claude, cursor});
    world.start();
    world.checks.answer(claude, operational);
    world.checks.answer(cursor, outage);
    QVERIFY(world.store->heroID() == cursor);
    world.settings.setPrimary(chatgpt);
    QVERIFY(world.store->heroID() == cursor);
    QVERIFY(world.store->heroIsPromoted());
    QVERIFY(world.store->groupRows() == (std::vector{Service::by(chatgpt), Service::by(claude)}));
    // The affected service itself.
    world.settings.setPrimary(cursor);
    QVERIFY(world.store->heroID() == cursor);
    QVERIFY(!world.store->heroIsPromoted());
}

void StatusStoreTest::theRingIsInactiveWhileWatchingIsOff()
{
    MonitorWorld world;
    world.startWith(outage);
    QCOMPARE(world.store->ringState(), RingState::outage);
    world.settings.setWatchOnThisMac(false);
    QCOMPARE(world.store->ringState(), RingState::inactive);
    world.settings.setWatchOnThisMac(true);
    QCOMPARE(world.store->ringState(), RingState::outage);
}

void StatusStoreTest::noRoundPromotesTheHeroWhileWatchingIsOff()
{
    MonitorWorld world({claude, chatgpt});
    world.checks.probeScript = [](ServiceID) { return std::optional(true); };
    world.start();
    world.checks.answer(claude, operational);
    world.checks.answer(chatgpt, outage);
    world.clock.advance(20s);
    world.checks.answerAll(operational);
    QVERIFY(world.store->heroID() == chatgpt);
    world.settings.setWatchOnThisMac(false);

    // The recovery is no longer shown, so a promotion would make the primary service the hero.
    world.clock.advance(11min);
    const auto finished = world.store->checkAll();
    QVERIFY(finished.isFinished());
    QVERIFY(world.store->heroID() == chatgpt);

    world.settings.setWatchOnThisMac(true);
    world.store->checkAll();
    world.checks.answerAll(operational);
    QVERIFY(world.store->heroID() == claude);
}

void StatusStoreTest::everythingReadsCheckingBeforeTheFirstAnswer()
{
    MonitorWorld world({claude, chatgpt});
    world.start();
    QVERIFY(world.store->status(claude) == ServiceStatus{});
    QCOMPARE(world.store->ringState(), RingState::inactive);
    QCOMPARE(world.store->heroStatusLabel(), u"Checking…"_s);
    QCOMPARE(world.store->heroBodyLine(), u"Checking status…"_s);
    QCOMPARE(world.store->groupHeading(), u"Watching"_s);
}

void StatusStoreTest::backToNormalIsShownForTenMinutes()
{
    MonitorWorld world;
    world.startWith(outage);
    world.checks.probeScript = [](ServiceID) { return std::optional(true); };
    world.checks.readScript = always(operational);
    world.clock.advance(20s);
    QCOMPARE(world.store->heroBodyLine(), u"Recovered · back to normal"_s);
    world.clock.advance(600s - 1ms);
    QCOMPARE(world.store->heroBodyLine(), u"Recovered · back to normal"_s);
    world.clock.advance(1ms);
    QCOMPARE(world.store->heroBodyLine(), u"Everything is working normally."_s);
}

void StatusStoreTest::everyWriteIsPublishedBeforeAndNotifiedAfter()
{
    MonitorWorld world({claude, chatgpt});
    world.startWith(operational);
    auto *store = world.store.get();

    struct State
    {
        QHash<ServiceID, ServiceStatus> statuses;
        std::optional<ServiceID> hero;
        bool open;
        std::optional<ServiceID> peeked;
        TimePoint now;
    };
    const auto stateNow = [store] {
        return State{store->statuses(), store->heroID(), store->popoverIsOpen(), store->peekedID(), store->now()};
    };
    State published;
    int publications = 0;
    connect(store, &StatusStore::objectWillChange, this, [&] {
        published = stateNow();
        ++publications;
    });
    QStringList told;
    const auto tell = [&](const QString &field, bool differs) {
        QCOMPARE(publications, told.size() + 1);
        QVERIFY2(differs, qPrintable(field));
        told.append(field);
    };
    connect(store, &StatusStore::statusesChanged, this,
            [&] { tell(u"statuses"_s, published.statuses != store->statuses()); });
    connect(store, &StatusStore::heroIDChanged, this, [&] { tell(u"heroID"_s, published.hero != store->heroID()); });
    connect(store, &StatusStore::popoverIsOpenChanged, this,
            [&] { tell(u"popoverIsOpen"_s, published.open != store->popoverIsOpen()); });
    connect(store, &StatusStore::peekedIDChanged, this,
            [&] { tell(u"peekedID"_s, published.peeked != store->peekedID()); });
    connect(store, &StatusStore::nowChanged, this, [&] { tell(u"now"_s, published.now != store->now()); });

    world.clock.advance(30s);
    store->setPopoverIsOpen(true);
    store->peek(chatgpt);
    store->checkAll();
    world.checks.answer(chatgpt, outage);
    store->setPopoverIsOpen(false);
    QCOMPARE(told,
             (QStringList{u"popoverIsOpen"_s, u"now"_s, u"peekedID"_s, u"statuses"_s, u"popoverIsOpen"_s, u"peekedID"_s,
                          u"heroID"_s}));
    QCOMPARE(publications, told.size());
}

void StatusStoreTest::destroyingTheStoreDuringACheckLeavesNothingPending_data()
{
    QTest::addColumn<bool>("probing");
    QTest::newRow("while the page is read") << false;
    QTest::newRow("while the service is probed") << true;
}

void StatusStoreTest::destroyingTheStoreDuringACheckLeavesNothingPending()
{
    QFETCH(bool, probing);
    MonitorWorld world({claude, chatgpt});
    world.settings.setOutageAlertsEnabled(true);
    world.startWith(outage);
    world.center.notifications.clear();
    world.clock.advance(20s);
    if (probing) {
        world.checks.answer(claude, operational);
    }
    world.store->setPopoverIsOpen(true);
    world.settings.setHasOnboarded(true);
    world.store->checkAll();

    world.store.reset();

    QCOMPARE(world.clock.pendingCount(), 0U);
    world.checks.answerAll(operational);
    if (probing) {
        world.checks.answerProbe(claude, true);
    }
    settle();
    world.sleepWake.wake();
    world.settings.setHasOnboarded(false);
    world.clock.advance(1h);
    QVERIFY(world.alerts().isEmpty());
    QCOMPARE(world.readCount(), 6);
    QCOMPARE(world.probeCount(), probing ? 1 : 0);
}

QTEST_GUILESS_MAIN(StatusStoreTest)
#include "tst_statusstore.moc"
