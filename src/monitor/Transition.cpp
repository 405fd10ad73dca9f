#include "monitor/Transition.h"

namespace kelvo {

using namespace Qt::StringLiterals;

bool isRecoveryCandidate(const ServiceStatus &previous, const StatusReading &reading)
{
    return isAffected(previous.health) && reading.health == ServiceHealth::operational;
}

Transition transition(const ServiceStatus &previous, const StatusReading &reading, bool isUsable, TimePoint now)
{
    ServiceStatus next = previous;
    next.lastChecked = now;
    next.label = reading.label;
    if (reading.health == ServiceHealth::unknown) {
        return {Step::inconclusive, next};
    }
    next.health = reading.health;
    if (isRecoveryCandidate(previous, reading)) {
        if (isUsable) {
            next.recoveredUntil = now + recoveryDisplayWindow;
            return {Step::recovered, next};
        }
        next.health = ServiceHealth::degraded;
        next.label = u"Recovering"_s;
        return {Step::recoveryUnconfirmed, next};
    }
    if (isAffected(previous.health)) {
        return {Step::stillAffected, next};
    }
    if (isAffected(reading.health)) {
        next.recoveredUntil.reset();
        return {Step::outageBegan, next};
    }
    return {Step::stillFine, next};
}

} // namespace kelvo
