#include "monitor/Transition.h"

#include <QTest>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto operational = ServiceHealth::operational;
constexpr auto degraded = ServiceHealth::degraded;
constexpr auto outage = ServiceHealth::outage;
constexpr auto unknown = ServiceHealth::unknown;

const TimePoint earlier = std::chrono::sys_days{std::chrono::March / 2 / 2026} + 8h;
const TimePoint now = earlier + 20s;

enum class Until { kept, set, cleared };

struct Row
{
    ServiceHealth previous;
    ServiceHealth reading;
    bool isUsable;
    Step step;
    ServiceHealth next;
    bool labelIsRecovering;
    Until until;
};

constexpr bool yes = true;
constexpr bool no = false;

constexpr Row rows[] = {
    // previous    reading      usable  step                       next         Recovering  recoveredUntil
    {operational, operational, yes, Step::stillFine, operational, false, Until::kept},
    {operational, operational, no, Step::stillFine, operational, false, Until::kept},
    {operational, degraded, yes, Step::outageBegan, degraded, false, Until::cleared},
    {operational, degraded, no, Step::outageBegan, degraded, false, Until::cleared},
    {operational, outage, yes, Step::outageBegan, outage, false, Until::cleared},
    {operational, outage, no, Step::outageBegan, outage, false, Until::cleared},
    {operational, unknown, yes, Step::inconclusive, operational, false, Until::kept},
    {operational, unknown, no, Step::inconclusive, operational, false, Until::kept},

    {degraded, operational, yes, Step::recovered, operational, false, Until::set},
    {degraded, operational, no, Step::recoveryUnconfirmed, degraded, true, Until::kept},
    {degraded, degraded, yes, Step::stillAffected, degraded, false, Until::kept},
    {degraded, degraded, no, Step::stillAffected, degraded, false, Until::kept},
    {degraded, outage, yes, Step::stillAffected, outage, false, Until::kept},
    {degraded, outage, no, Step::stillAffected, outage, false, Until::kept},
    {degraded, unknown, yes, Step::inconclusive, degraded, false, Until::kept},
    {degraded, unknown, no, Step::inconclusive, degraded, false, Until::kept},

    {outage, operational, yes, Step::recovered, operational, false, Until::set},
    {outage, operational, no, Step::recoveryUnconfirmed, degraded, true, Until::kept},
    {outage, degraded, yes, Step::stillAffected, degraded, false, Until::kept},
    {outage, degraded, no, Step::stillAffected, degraded, false, Until::kept},
    {outage, outage, yes, Step::stillAffected, outage, false, Until::kept},
    {outage, outage, no, Step::stillAffected, outage, false, Until::kept},
    {outage, unknown, yes, Step::inconclusive, outage, false, Until::kept},
    {outage, unknown, no, Step::inconclusive, outage, false, Until::kept},

    {unknown, operational, yes, Step::stillFine, operational, false, Until::kept},
    {unknown, operational, no, Step::stillFine, operational, false, Until::kept},
    {unknown, degraded, yes, Step::outageBegan, degraded, false, Until::cleared},
    {unknown, degraded, no, Step::outageBegan, degraded, false, Until::cleared},
    {unknown, outage, yes, Step::outageBegan, outage, false, Until::cleared},
    {unknown, outage, no, Step::outageBegan, outage, false, Until::cleared},
    {unknown, unknown, yes, Step::inconclusive, unknown, false, Until::kept},
    {unknown, unknown, no, Step::inconclusive, unknown, false, Until::kept},
};

const char *nameOf(ServiceHealth health)
{
    constexpr const char *names[] = {"operational", "degraded", "outage", "unknown"};
    return names[static_cast<int>(health)];
}

StatusReading reading(ServiceHealth health)
{
    return {health, u"of the page"_s};
}

ServiceStatus record(ServiceHealth health, std::optional<TimePoint> recoveredUntil = {})
{
    return {health, earlier, u"of before"_s, recoveredUntil};
}

} // namespace

class TransitionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyStepIsAsInTheTable_data();
    void everyStepIsAsInTheTable();
    void onlyAReportedRecoveryNeedsAProbe();
    void aNetworkFailureLeavesAnOperationalServiceOperational();
    void anUnreadableRoundWithinAnOutageChangesOnlyLabelAndTime();
    void anUnconfirmedRecoveryIsProbedAgain();
    void aRecoveryIsShownForTenMinutes();
    void aNewOutageEndsTheDisplayOfARecovery();
    void theFirstCheckOfAnAffectedServiceBeginsAnOutage();
    void aSecondRecoveryRestartsTheTenMinutes();
    void anExpiredRecoveryTimeIsKept();
};

void TransitionTest::everyStepIsAsInTheTable_data()
{
    QTest::addColumn<Row>("row");
    QTest::addColumn<bool>("recoveredBefore");
    for (const auto &row : rows) {
        for (const bool recoveredBefore : {false, true}) {
            QTest::addRow("%s, reads %s, %s, %s", nameOf(row.previous), nameOf(row.reading),
                          row.isUsable ? "usable" : "not usable",
                          recoveredBefore ? "recovered before" : "never recovered")
                << row << recoveredBefore;
        }
    }
}

void TransitionTest::everyStepIsAsInTheTable()
{
    QFETCH(Row, row);
    QFETCH(bool, recoveredBefore);
    const auto before = recoveredBefore ? std::optional<TimePoint>(earlier + 5min) : std::nullopt;
    const auto previous = record(row.previous, before);

    const auto [step, next] = transition(previous, reading(row.reading), row.isUsable, now);

    QCOMPARE(step, row.step);
    QCOMPARE(next.health, row.next);
    QCOMPARE(next.label, row.labelIsRecovering ? u"Recovering"_s : u"of the page"_s);
    QVERIFY(next.lastChecked == now);
    switch (row.until) {
    case Until::kept: QVERIFY(next.recoveredUntil == before); break;
    case Until::set: QVERIFY(next.recoveredUntil == now + 600s); break;
    case Until::cleared: QVERIFY(!next.recoveredUntil); break;
    }
}

void TransitionTest::onlyAReportedRecoveryNeedsAProbe()
{
    for (const auto previous : {operational, degraded, outage, unknown}) {
        for (const auto told : {operational, degraded, outage, unknown}) {
            const bool expected = (previous == degraded || previous == outage) && told == operational;
            QVERIFY2(isRecoveryCandidate(record(previous), reading(told)) == expected, nameOf(previous));
        }
    }
}

void TransitionTest::aNetworkFailureLeavesAnOperationalServiceOperational()
{
    const auto previous = record(operational, earlier + 9min);
    const auto [step, next] = transition(previous, {unknown, u"Couldn’t reach status"_s}, false, now);
    QCOMPARE(step, Step::inconclusive);
    QVERIFY(next == (ServiceStatus{operational, now, u"Couldn’t reach status"_s, earlier + 9min}));
}

void TransitionTest::anUnreadableRoundWithinAnOutageChangesOnlyLabelAndTime()
{
    const auto unread = transition(record(outage), {unknown, u"Couldn’t reach status"_s}, false, now);
    QVERIFY(unread.next == (ServiceStatus{outage, now, u"Couldn’t reach status"_s, std::nullopt}));

    QVERIFY(isRecoveryCandidate(unread.next, reading(operational)));
    QCOMPARE(transition(unread.next, reading(operational), true, now + 20s).step, Step::recovered);
}

void TransitionTest::anUnconfirmedRecoveryIsProbedAgain()
{
    const auto refused = transition(record(outage), reading(operational), false, now);
    QCOMPARE(refused.step, Step::recoveryUnconfirmed);
    QVERIFY(refused.next == (ServiceStatus{degraded, now, u"Recovering"_s, std::nullopt}));

    QVERIFY(isRecoveryCandidate(refused.next, reading(operational)));
    const auto confirmed = transition(refused.next, reading(operational), true, now + 20s);
    QCOMPARE(confirmed.step, Step::recovered);
    QVERIFY(confirmed.next == (ServiceStatus{operational, now + 20s, u"of the page"_s, now + 620s}));
}

void TransitionTest::aRecoveryIsShownForTenMinutes()
{
    QVERIFY(transition(record(degraded), reading(operational), true, now).next.recoveredUntil == now + 10min);
}

void TransitionTest::aNewOutageEndsTheDisplayOfARecovery()
{
    const auto recovered = transition(record(outage), reading(operational), true, now);
    const auto again = transition(recovered.next, reading(degraded), true, now + 9min);
    QCOMPARE(again.step, Step::outageBegan);
    QVERIFY(!again.next.recoveredUntil);
}

void TransitionTest::theFirstCheckOfAnAffectedServiceBeginsAnOutage()
{
    for (const auto told : {degraded, outage}) {
        QCOMPARE(transition(ServiceStatus{}, reading(told), false, now).step, Step::outageBegan);
    }
}

void TransitionTest::aSecondRecoveryRestartsTheTenMinutes()
{
    const auto next = transition(record(degraded, now + 60s), reading(operational), true, now).next;
    QVERIFY(next.recoveredUntil == now + 600s);
}

void TransitionTest::anExpiredRecoveryTimeIsKept()
{
    const auto next = transition(record(operational, now - 1h), reading(operational), false, now).next;
    QVERIFY(next.recoveredUntil == now - 1h);
}

QTEST_GUILESS_MAIN(TransitionTest)
#include "tst_transition.moc"
