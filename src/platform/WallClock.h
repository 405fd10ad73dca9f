#pragma once

#include <chrono>
#include <functional>

namespace kelvo {

/// An instant of civil time. It can step backwards when the user or NTP sets the clock.
using TimePoint = std::chrono::system_clock::time_point;

/// Gives the current civil time. Passed in wherever "now" is needed, so that time is a parameter.
using WallClock = std::function<TimePoint()>;

} // namespace kelvo
