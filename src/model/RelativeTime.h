#pragma once

#include "model/TimePoint.h"

#include <QString>

#include <optional>

namespace kelvo::RelativeTime {

/// Formats the age of the last check for the user: "Checked 5 seconds ago", "Not checked yet".
/// An instant after `now` counts as 0 seconds ago.
QString checked(std::optional<TimePoint> lastChecked, TimePoint now);

} // namespace kelvo::RelativeTime
