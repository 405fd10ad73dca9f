#pragma once

namespace kelvo {

/// What the ring in the tray shows.
enum class RingState {
    available,  ///< no watched service is affected, and at least one is operational
    outage,     ///< a watched service has an outage
    recovering, ///< a watched service is degraded, or its recovery is not confirmed yet
    inactive,   ///< nothing is watched, or no health is known yet
};

} // namespace kelvo
