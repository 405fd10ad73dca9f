#pragma once

#include "monitor/RingState.h"

#include <QIcon>

namespace kelvo::MenuBarIcon {

/// The design size, in points.
inline constexpr double designSize = 18.0;

/// The ring for a state on a bar that is light or dark. Drawn when it is asked for, so it is sharp at every size and
/// scale; never tinted.
QIcon image(RingState state, bool onDarkBar);

} // namespace kelvo::MenuBarIcon
