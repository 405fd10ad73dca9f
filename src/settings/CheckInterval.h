#pragma once

#include "model/RawValues.h"

#include <chrono>

namespace kelvo {

/// How often services are checked while none of them is affected.
enum class CheckInterval { oneMinute, fiveMinutes };

/// The raw value of an interval is its length in seconds.
template<>
inline constexpr auto rawValueTable<CheckInterval> = std::to_array<RawValue<CheckInterval, int>>({
    {CheckInterval::oneMinute, 60},
    {CheckInterval::fiveMinutes, 300},
});

inline constexpr auto allCheckIntervals = allCases<CheckInterval>();

/// Returns the length of the interval.
inline std::chrono::seconds duration(CheckInterval interval)
{
    return std::chrono::seconds(rawValue(interval));
}

/// Returns the name that the user sees.
QString displayTitle(CheckInterval interval);

} // namespace kelvo
