#include "monitor/DisplayRules.h"

#include <QTest>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto operational = ServiceHealth::operational;
constexpr auto degraded = ServiceHealth::degraded;
constexpr auto outage = ServiceHealth::outage;
constexpr auto unknown = ServiceHealth::unknown;

const TimePoint now = std::chrono::sys_days{std::chrono::March / 2 / 2026} + 8h;

using Hero = std::optional<ServiceStatus>;
using Until = std::optional<TimePoint>;
using Watched = std::vector<WatchedStatus>;

ServiceStatus record(ServiceHealth health, const QString &label = {}, Until recoveredUntil = {})
{
    return {health, now - 20s, label, recoveredUntil};
}

WatchedStatus watch(ServiceID id, const ServiceStatus &status)
{
    return {Service::by(id), status};
}

WatchedStatus watch(ServiceID id, ServiceHealth health, Until recoveredUntil = {})
{
    return watch(id, record(health, {}, recoveredUntil));
}

constexpr auto A = ServiceID::cursor;
constexpr auto B = ServiceID::claude;
constexpr auto C = ServiceID::gemini;

} // namespace

Q_DECLARE_METATYPE(std::optional<kelvo::ServiceStatus>)
Q_DECLARE_METATYPE(kelvo::WatchedStatus)
Q_DECLARE_METATYPE(std::optional<kelvo::ServiceID>)

class DisplayRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theStatusLabelFollowsTheHealthOfTheHero_data();
    void theStatusLabelFollowsTheHealthOfTheHero();
    void theBodyLineFollowsTheHeroAndTheOthers_data();
    void theBodyLineFollowsTheHeroAndTheOthers();
    void theHeadingFollowsTheHeroAndTheOthers_data();
    void theHeadingFollowsTheHeroAndTheOthers();
    void theRingShowsTheWorstHealth_data();
    void theRingShowsTheWorstHealth();
    void theRingIsInactiveWhileWatchingIsOff();
    void theFirstAffectedOrRecoveredServiceIsPromoted_data();
    void theFirstAffectedOrRecoveredServiceIsPromoted();
    void theFirstOtherAffectedServiceIsFound_data();
    void theFirstOtherAffectedServiceIsFound();

    void theTextsAskToChooseAServiceWithoutAHero();
    void aHeroWhoseRecoveryIsUnconfirmedReadsRecovering();
    void theBodyLineNamesASecondAffectedService();
    void everythingReadsCheckingBeforeTheFirstAnswer();
};

void DisplayRulesTest::theStatusLabelFollowsTheHealthOfTheHero_data()
{
    QTest::addColumn<Hero>("hero");
    QTest::addColumn<QString>("text");
    QTest::newRow("no hero") << Hero() << u"No service selected"_s;
    QTest::newRow("operational") << Hero(record(operational)) << u"Operational"_s;
    QTest::newRow("operational, whatever the label") << Hero(record(operational, u"All fine"_s)) << u"Operational"_s;
    QTest::newRow("degraded with a label")
        << Hero(record(degraded, u"Degraded performance"_s)) << u"Degraded performance"_s;
    QTest::newRow("degraded, unconfirmed") << Hero(record(degraded, u"Recovering"_s)) << u"Recovering"_s;
    QTest::newRow("degraded without a label") << Hero(record(degraded)) << u"Partial outage"_s;
    QTest::newRow("degraded with a blank label") << Hero(record(degraded, u" "_s)) << u" "_s;
    QTest::newRow("outage") << Hero(record(outage)) << u"Major outage"_s;
    QTest::newRow("outage, whatever the label") << Hero(record(outage, u"Down"_s)) << u"Major outage"_s;
    QTest::newRow("unknown") << Hero(record(unknown)) << u"Checking…"_s;
    QTest::newRow("unknown, whatever the label") << Hero(record(unknown, u"Couldn’t reach status"_s)) << u"Checking…"_s;
}

void DisplayRulesTest::theStatusLabelFollowsTheHealthOfTheHero()
{
    QFETCH(Hero, hero);
    QTEST(heroStatusLabel(hero), "text");
}

void DisplayRulesTest::theBodyLineFollowsTheHeroAndTheOthers_data()
{
    QTest::addColumn<Hero>("hero");
    QTest::addColumn<bool>("anotherInTrouble");
    QTest::addColumn<QString>("text");
    const auto choose = u"Choose a service in Settings."_s;
    const auto another = u"GitHub Copilot is affected too. We’ll tell you."_s;
    const auto notify = u"We’ll notify you when it’s back."_s;
    const auto recovered = u"Recovered · back to normal"_s;
    const auto fine = u"Everything is working normally."_s;
    const auto checking = u"Checking status…"_s;

    QTest::newRow("no hero") << Hero() << false << choose;
    QTest::newRow("no hero, another in trouble") << Hero() << true << choose;
    QTest::newRow("degraded alone") << Hero(record(degraded)) << false << notify;
    QTest::newRow("outage alone") << Hero(record(outage)) << false << notify;
    QTest::newRow("degraded, another too") << Hero(record(degraded)) << true << another;
    QTest::newRow("outage, another too") << Hero(record(outage)) << true << another;
    QTest::newRow("degraded soon after a recovery") << Hero(record(degraded, {}, now + 1min)) << false << notify;
    QTest::newRow("recovered, on show") << Hero(record(operational, {}, now + 10min)) << false << recovered;
    QTest::newRow("recovered, another in trouble") << Hero(record(operational, {}, now + 1min)) << true << recovered;
    QTest::newRow("recovered, its last instant") << Hero(record(operational, {}, now + 1us)) << false << recovered;
    QTest::newRow("recovered, just over") << Hero(record(operational, {}, now)) << false << fine;
    QTest::newRow("recovered long ago") << Hero(record(operational, {}, now - 1h)) << false << fine;
    QTest::newRow("operational") << Hero(record(operational)) << false << fine;
    QTest::newRow("operational, another in trouble") << Hero(record(operational)) << true << fine;
    QTest::newRow("unknown") << Hero(record(unknown)) << false << checking;
    QTest::newRow("unknown, another in trouble") << Hero(record(unknown)) << true << checking;
}

void DisplayRulesTest::theBodyLineFollowsTheHeroAndTheOthers()
{
    QFETCH(Hero, hero);
    QFETCH(bool, anotherInTrouble);
    const auto another = anotherInTrouble ? std::optional(Service::by(ServiceID::copilot)) : std::nullopt;
    QTEST(heroBodyLine(hero, another, now), "text");
}

void DisplayRulesTest::theHeadingFollowsTheHeroAndTheOthers_data()
{
    QTest::addColumn<Hero>("hero");
    QTest::addColumn<bool>("anotherInTrouble");
    QTest::addColumn<QString>("text");
    const auto also = u"Also affected"_s;
    const auto still = u"Still working"_s;
    const auto watching = u"Watching"_s;
    QTest::newRow("no hero") << Hero() << false << watching;
    QTest::newRow("no hero, another in trouble") << Hero() << true << also;
    QTest::newRow("operational") << Hero(record(operational)) << false << watching;
    QTest::newRow("operational, another in trouble") << Hero(record(operational)) << true << also;
    QTest::newRow("unknown") << Hero(record(unknown)) << false << watching;
    QTest::newRow("unknown, another in trouble") << Hero(record(unknown)) << true << also;
    QTest::newRow("degraded") << Hero(record(degraded)) << false << still;
    QTest::newRow("degraded, another in trouble") << Hero(record(degraded)) << true << also;
    QTest::newRow("outage") << Hero(record(outage)) << false << still;
    QTest::newRow("outage, another in trouble") << Hero(record(outage)) << true << also;
}

void DisplayRulesTest::theHeadingFollowsTheHeroAndTheOthers()
{
    QFETCH(Hero, hero);
    QFETCH(bool, anotherInTrouble);
    QTEST(groupHeading(hero, anotherInTrouble), "text");
}

void DisplayRulesTest::theRingShowsTheWorstHealth_data()
{
    QTest::addColumn<Watched>("watched");
    QTest::addColumn<RingState>("state");
    QTest::newRow("nothing watched") << Watched{} << RingState::inactive;
    QTest::newRow("one unknown") << Watched{watch(A, unknown)} << RingState::inactive;
    QTest::newRow("all unknown") << Watched{watch(A, unknown), watch(B, unknown)} << RingState::inactive;
    QTest::newRow("never checked") << Watched{watch(A, ServiceStatus{})} << RingState::inactive;
    QTest::newRow("operational") << Watched{watch(A, operational)} << RingState::available;
    QTest::newRow("one has answered") << Watched{watch(A, unknown), watch(B, operational)} << RingState::available;
    QTest::newRow("degraded") << Watched{watch(A, operational), watch(B, degraded)} << RingState::recovering;
    QTest::newRow("degraded and unknown") << Watched{watch(A, degraded), watch(B, unknown)} << RingState::recovering;
    QTest::newRow("unconfirmed") << Watched{watch(A, record(degraded, u"Recovering"_s))} << RingState::recovering;
    QTest::newRow("outage") << Watched{watch(A, operational), watch(B, outage)} << RingState::outage;
    QTest::newRow("outage before degraded") << Watched{watch(A, outage), watch(B, degraded)} << RingState::outage;
    QTest::newRow("outage after degraded") << Watched{watch(A, degraded), watch(B, outage)} << RingState::outage;
    QTest::newRow("outage among unknown") << Watched{watch(A, unknown), watch(B, outage)} << RingState::outage;
    QTest::newRow("just recovered") << Watched{watch(A, operational, now + 10min)} << RingState::available;
}

void DisplayRulesTest::theRingShowsTheWorstHealth()
{
    QFETCH(Watched, watched);
    QTEST(ringState(true, watched), "state");
}

void DisplayRulesTest::theRingIsInactiveWhileWatchingIsOff()
{
    QCOMPARE(ringState(false, {}), RingState::inactive);
    for (const auto health : {operational, degraded, outage, unknown}) {
        QCOMPARE(ringState(false, {watch(A, health)}), RingState::inactive);
    }
}

void DisplayRulesTest::theFirstAffectedOrRecoveredServiceIsPromoted_data()
{
    QTest::addColumn<Watched>("watched");
    QTest::addColumn<std::optional<ServiceID>>("hero");
    const auto primary = std::optional(A);
    QTest::newRow("nothing to tell") << Watched{watch(A, operational), watch(B, operational)} << primary;
    QTest::newRow("never checked") << Watched{watch(B, ServiceStatus{}), watch(A, ServiceStatus{})} << primary;
    QTest::newRow("unknown is no trouble") << Watched{watch(B, unknown), watch(A, operational)} << primary;
    QTest::newRow("the first in trouble, an outage")
        << Watched{watch(A, operational), watch(B, outage), watch(C, degraded)} << std::optional(B);
    QTest::newRow("the first in trouble, degraded before an outage")
        << Watched{watch(A, operational), watch(B, degraded), watch(C, outage)} << std::optional(B);
    QTest::newRow("the order decides") << Watched{watch(C, degraded), watch(B, degraded)} << std::optional(C);
    QTest::newRow("the primary in trouble") << Watched{watch(A, outage), watch(B, outage)} << primary;
    QTest::newRow("recovered five minutes ago")
        << Watched{watch(A, operational), watch(B, operational), watch(C, operational, now + 5min)} << std::optional(C);
    QTest::newRow("the first of two recovered")
        << Watched{watch(A, operational), watch(B, operational, now + 1min), watch(C, operational, now + 9min)}
        << std::optional(B);
    QTest::newRow("trouble beats a recovery before it")
        << Watched{watch(A, operational), watch(B, operational, now + 9min), watch(C, degraded)} << std::optional(C);
    QTest::newRow("recovery ends on the instant")
        << Watched{watch(A, operational), watch(B, operational, now)} << primary;
    QTest::newRow("recovery's last instant")
        << Watched{watch(A, operational), watch(B, operational, now + 1us)} << std::optional(B);
    QTest::newRow("no recovery within ten minutes")
        << Watched{watch(A, operational), watch(B, operational, now - 1s)} << primary;
}

void DisplayRulesTest::theFirstAffectedOrRecoveredServiceIsPromoted()
{
    QFETCH(Watched, watched);
    QFETCH(std::optional<ServiceID>, hero);
    QVERIFY(promotedHero(watched, A, now) == hero);
}

void DisplayRulesTest::theFirstOtherAffectedServiceIsFound_data()
{
    QTest::addColumn<Watched>("watched");
    QTest::addColumn<std::optional<ServiceID>>("hero");
    QTest::addColumn<std::optional<ServiceID>>("other");
    const std::optional<ServiceID> none;
    const Watched two{watch(A, outage), watch(B, degraded), watch(C, outage)};
    QTest::newRow("the first but the hero") << two << std::optional(A) << std::optional(B);
    QTest::newRow("before the hero") << two << std::optional(C) << std::optional(A);
    QTest::newRow("no hero") << two << none << std::optional(A);
    QTest::newRow("the hero alone") << Watched{watch(A, outage), watch(B, unknown), watch(C, operational)}
                                    << std::optional(A) << none;
    QTest::newRow("the hero twice in the order")
        << Watched{watch(A, outage), watch(A, outage)} << std::optional(A) << none;
    QTest::newRow("nothing watched") << Watched{} << std::optional(A) << none;
}

void DisplayRulesTest::theFirstOtherAffectedServiceIsFound()
{
    QFETCH(Watched, watched);
    QFETCH(std::optional<ServiceID>, hero);
    QFETCH(std::optional<ServiceID>, other);
    const auto found = firstOtherAffected(watched, hero);
    QVERIFY((found ? std::optional(found->id) : std::nullopt) == other);
}

void DisplayRulesTest::theTextsAskToChooseAServiceWithoutAHero()
{
    QVERIFY(!promotedHero({}, std::nullopt, now));
    QVERIFY(!promotedHero({watch(A, operational)}, std::nullopt, now));
    QCOMPARE(heroStatusLabel({}), u"No service selected"_s);
    QCOMPARE(heroBodyLine({}, {}, now), u"Choose a service in Settings."_s);
    QCOMPARE(groupHeading({}, false), u"Watching"_s);
}

void DisplayRulesTest::aHeroWhoseRecoveryIsUnconfirmedReadsRecovering()
{
    const auto hero = record(degraded, u"Recovering"_s);
    QCOMPARE(heroStatusLabel(hero), u"Recovering"_s);
    QCOMPARE(ringState(true, {watch(A, hero)}), RingState::recovering);
}

void DisplayRulesTest::theBodyLineNamesASecondAffectedService()
{
    const Watched watched{watch(A, outage), watch(B, degraded)};
    const auto other = firstOtherAffected(watched, A);
    QCOMPARE(heroBodyLine(record(outage), other, now), u"Claude is affected too. We’ll tell you."_s);
    QCOMPARE(groupHeading(record(outage), other.has_value()), u"Also affected"_s);
}

void DisplayRulesTest::everythingReadsCheckingBeforeTheFirstAnswer()
{
    const ServiceStatus never;
    QCOMPARE(heroStatusLabel(never), u"Checking…"_s);
    QCOMPARE(heroBodyLine(never, {}, now), u"Checking status…"_s);
    QCOMPARE(groupHeading(never, false), u"Watching"_s);
    QCOMPARE(ringState(true, {watch(A, never), watch(B, never)}), RingState::inactive);
}

QTEST_GUILESS_MAIN(DisplayRulesTest)
#include "tst_displayrules.moc"
