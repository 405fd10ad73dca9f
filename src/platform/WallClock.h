#pragma once

#include "model/TimePoint.h"

#include <functional>

namespace kelvo {

/// Gives the current civil time. Passed in wherever "now" is needed, so that time is a parameter.
using WallClock = std::function<TimePoint()>;

} // namespace kelvo
