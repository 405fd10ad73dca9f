#include "FuzzTargets.h"

#include "monitor/Transition.h"

namespace kelvo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// A byte is a reading: two bits are the health, one bit is the result of the probe, the others are the minutes since the
// reading before.
void fuzzTransition(QByteArrayView readings)
{
    ServiceStatus record;
    TimePoint now(1'700'000'000s);
    bool isInTrouble = false;                     // between the begin of an outage and the alert of its end
    ServiceHealth known = ServiceHealth::unknown; // the last health that a source reported
    for (const char byte : readings) {
        const auto bits = static_cast<unsigned char>(byte);
        const auto health = static_cast<ServiceHealth>(bits & 3U);
        const bool isUsable = bits & 4U;
        now += std::chrono::minutes(bits >> 3U);

        const bool isRead = health != ServiceHealth::unknown;
        const bool isTrouble = health == ServiceHealth::degraded || health == ServiceHealth::outage;
        const bool begins = isTrouble && !isInTrouble;
        const bool ends = isInTrouble && isRead && !isTrouble && isUsable;
        if (isRead) {
            known = health;
        }
        isInTrouble = (isInTrouble || begins) && !ends;

        const StatusReading reading{health, u"label"_s};
        const bool mustProbe = isRecoveryCandidate(record, reading);
        const auto displayedBefore = record.recoveredUntil;
        const auto [step, next] = transition(record, reading, isUsable, now);
        require((step == Step::recovered) == ends, "one alert at each end of an outage, and at no other time");
        require((step == Step::outageBegan) == begins, "one alert at each begin of an outage, and at no other time");
        require((step == Step::inconclusive) == !isRead, "only a failed check is inconclusive");
        require(step != Step::recovered || mustProbe, "a recovery is probed");
        require(mustProbe || transition(record, reading, !isUsable, now) == Transition{step, next},
                "a probe matters only where one is made");

        require(isAffected(next.health) == isInTrouble, "the record is affected during trouble");
        require((next.health == known) != (step == Step::recoveryUnconfirmed) || !isRead,
                "the record has the last health, unless a recovery is unconfirmed");
        require(isRead || next.health == record.health, "a failed check keeps the health");
        require(next.lastChecked == now, "the record has the time of the check");
        require(next.label == (step == Step::recoveryUnconfirmed ? u"Recovering"_s : u"label"_s),
                "the record has the label of the reading");
        require(next.recoveredUntil
                    == (ends         ? std::optional(now + 10min)
                            : begins ? std::nullopt
                                     : displayedBefore),
                "a recovery is shown for ten minutes, or until the next outage");
        record = next;
    }
}

} // namespace kelvo
