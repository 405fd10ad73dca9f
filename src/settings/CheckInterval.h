#pragma once

#include <array>
#include <chrono>
#include <optional>

namespace kelvo {

/// How often services are checked while none of them is affected.
enum class CheckInterval { oneMinute, fiveMinutes };

inline constexpr std::array allCheckIntervals{CheckInterval::oneMinute, CheckInterval::fiveMinutes};

/// Returns the length of the interval.
std::chrono::seconds duration(CheckInterval interval);
/// The number by which an interval is stored: its seconds.
int rawValue(CheckInterval interval);
/// The interval stored as `raw`; nothing for any number but those.
std::optional<CheckInterval> checkIntervalFromRawValue(int raw);

} // namespace kelvo
