#pragma once

#include <chrono>

namespace kelvo {

/// An instant of civil time. It can step backwards when the user or NTP sets the clock.
using TimePoint = std::chrono::system_clock::time_point;

} // namespace kelvo
