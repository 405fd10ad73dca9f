#pragma once

#include "model/ServiceStatus.h"
#include "model/StatusReading.h"

#include <chrono>

namespace kelvo {

/// How long a confirmed recovery stays on show.
inline constexpr std::chrono::seconds recoveryDisplayWindow{600};

/// What a reading means for a service whose record is known.
enum class Step {
    inconclusive,        ///< nothing was learned: the health stays
    recovered,           ///< out of trouble, and the service itself answers
    recoveryUnconfirmed, ///< the source says so, the service does not answer
    stillAffected,       ///< in trouble as before, of whatever kind
    outageBegan,         ///< from no trouble into trouble
    stillFine,           ///< in no trouble, as before
};

/// A step of a service's story, and its record after it.
struct Transition
{
    Step step;
    ServiceStatus next;

    bool operator==(const Transition &) const = default;
};

/// Whether `reading` would end the trouble in `previous`, so that the service itself must be asked before it is believed.
bool isRecoveryCandidate(const ServiceStatus &previous, const StatusReading &reading);

/// The step from `previous` with a reading that came at `now`. `isUsable` is the service's own answer; it matters only
/// for a recovery candidate.
Transition transition(const ServiceStatus &previous, const StatusReading &reading, bool isUsable, TimePoint now);

} // namespace kelvo
