#pragma once

#include "menubar/Views.h"

#include <QList>
#include <QMargins>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace kelvo::PopoverPlacement {

/// Returns the place of the ring: its rectangle, else the point of the click as the bar reports it, else the position of
/// the pointer, if it is over a panel. Null when none of them is known or can be true. `screens` are the rectangles of the
/// screens.
std::optional<QRect> anchor(const RingPlace &ring, const std::optional<QPoint> &pointer, const QList<QRect> &screens);

/// Returns the top left corner for a popover of `size` beside `anchor`. The popover is centred below the anchor, or above
/// it when the anchor is in the lower half of `screen`. It is entirely inside `available`, the part of the screen without
/// panels; if it is larger than that, its top left corner is visible.
QPoint beside(const QRect &anchor, const QSize &size, const QRect &screen, const QRect &available);

/// Returns the corner of the screen that is nearest to the anchor.
Qt::Edges nearestCorner(const QRect &anchor, const QRect &screen);

/// The room around a popover in this corner: the usual gap at the two edges, no limit at the others.
QMargins roomInCorner(Qt::Edges corner);

/// Returns the corner of the screen at the end of the panel, where the tray usually is, as an anchor of size 0. The
/// position of the panel is derived from the difference between `screen` and `available`.
QRect panelCorner(const QRect &screen, const QRect &available);

} // namespace kelvo::PopoverPlacement
