#pragma once

#include "model/TimePoint.h"

#include <functional>

namespace kelvo {

/// Returns the current wall clock time. It is passed to every class that needs "now", so that tests can set the time.
using WallClock = std::function<TimePoint()>;

} // namespace kelvo
