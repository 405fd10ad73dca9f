#pragma once

#include "model/ServiceStatus.h"
#include "model/StatusReading.h"

#include <chrono>

namespace kelvo {

/// How long a confirmed recovery is shown.
inline constexpr std::chrono::seconds recoveryDisplayWindow{600};

/// What a reading changes about a service. "Affected" means degraded or outage.
enum class Step {
    inconclusive,        ///< the status could not be read; the health does not change
    recovered,           ///< the service was affected; the source reports it operational and the probe succeeded
    recoveryUnconfirmed, ///< the source reports it operational, but the probe failed
    stillAffected,       ///< affected before and now, not necessarily with the same health
    outageBegan,         ///< affected now, but not before
    stillFine,           ///< not affected before or now
};

/// A step, and the record that results from it.
struct Transition
{
    Step step;
    ServiceStatus next;

    bool operator==(const Transition &) const = default;
};

/// Whether `previous` is affected and `reading` is operational. The service must then be probed before the reading is
/// trusted.
bool isRecoveryCandidate(const ServiceStatus &previous, const StatusReading &reading);

/// Computes the step from `previous` for a reading that arrived at `now`. `isUsable` is the result of the probe; it is
/// used only for a recovery candidate.
Transition transition(const ServiceStatus &previous, const StatusReading &reading, bool isUsable, TimePoint now);

} // namespace kelvo
