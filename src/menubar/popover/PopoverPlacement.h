#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace kelvo::PopoverPlacement {

/// Where a popover of `size` goes (its top left) for an anchor on a screen: centred below it, or above it when it is in
/// the lower half of the screen, clear of the panels and wholly inside `available`, the part that they leave. One that
/// is larger than that keeps its top left visible.
QPoint beside(const QRect &anchor, const QSize &size, const QRect &screen, const QRect &available);

/// The corner of the screen that is next to where rings are: the end of the panel, as far as panels can be told from
/// what they take of the screen. An anchor without extent.
QRect panelCorner(const QRect &screen, const QRect &available);

} // namespace kelvo::PopoverPlacement
