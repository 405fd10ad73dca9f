#pragma once

#include <chrono>

namespace kelvo {

/// A wall clock time. The wall clock can step backwards when the user or NTP sets it.
using TimePoint = std::chrono::system_clock::time_point;

} // namespace kelvo
