#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace kelvo::PopoverPlacement {

/// Returns the top left corner for a popover of `size` beside `anchor`. The popover is centred below the anchor, or above
/// it when the anchor is in the lower half of `screen`. It is entirely inside `available`, the part of the screen without
/// panels; if it is larger than that, its top left corner is visible.
QPoint beside(const QRect &anchor, const QSize &size, const QRect &screen, const QRect &available);

/// Returns the corner of the screen at the end of the panel, where the tray usually is, as an anchor of size 0. The
/// position of the panel is derived from the difference between `screen` and `available`.
QRect panelCorner(const QRect &screen, const QRect &available);

} // namespace kelvo::PopoverPlacement
