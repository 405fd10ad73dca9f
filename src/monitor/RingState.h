#pragma once

namespace kelvo {

/// What the ring in the tray says.
enum class RingState {
    available,  ///< the watched services are usable
    outage,     ///< a watched service is out
    recovering, ///< a watched service works in part, or its recovery is not confirmed yet
    inactive,   ///< nothing is watched, or nothing is known yet
};

} // namespace kelvo
