#pragma once

#include "model/ServiceHealth.h"
#include "model/TimePoint.h"

#include <QString>

#include <optional>

namespace kelvo {

/// The record of one service. It is kept in memory only. A default-constructed record means "never checked".
struct ServiceStatus
{
    ServiceHealth health = ServiceHealth::unknown; ///< the last known health; a failed check does not change it
    std::optional<TimePoint> lastChecked;          ///< when the last check finished, whatever its result
    QString label;                                 ///< from the last check, even when `health` is from an earlier one
    std::optional<TimePoint> recoveredUntil;       ///< when a recovery stops being shown; not cleared after that

    bool operator==(const ServiceStatus &) const = default;
};

} // namespace kelvo
