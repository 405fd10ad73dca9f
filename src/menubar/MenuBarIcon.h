#pragma once

#include "monitor/RingState.h"

#include <QIcon>

namespace kelvo::MenuBarIcon {

/// The side of the ring's image as designed, in points.
inline constexpr double designSize = 18.0;

/// Returns the ring for a state on a light or dark bar. The icon is painted at each requested size, so it is sharp at
/// every scale. It is not tinted.
QIcon image(RingState state, bool onDarkBar);

} // namespace kelvo::MenuBarIcon
