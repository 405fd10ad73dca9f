#pragma once

#include "model/ServiceHealth.h"
#include "model/TimePoint.h"

#include <QString>

#include <optional>

namespace kelvo {

/// What is known of one service. Held in memory only. The default is a service that was never checked.
struct ServiceStatus
{
    ServiceHealth health = ServiceHealth::unknown; ///< the last known health; a failed check leaves it as it was
    std::optional<TimePoint> lastChecked;          ///< when the last check finished, whatever its result
    QString label;                                 ///< of the last check, even where `health` is an earlier one's
    std::optional<TimePoint> recoveredUntil;       ///< until when a recovery is shown; kept after it has passed

    bool operator==(const ServiceStatus &) const = default;
};

} // namespace kelvo
