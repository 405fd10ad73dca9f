#pragma once

#include "model/TimePoint.h"

#include <QString>

#include <optional>

namespace kelvo::RelativeTime {

/// How long ago the last check was, in one sentence for the user.
QString checked(std::optional<TimePoint> lastChecked, TimePoint now);

} // namespace kelvo::RelativeTime
