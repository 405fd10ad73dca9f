#pragma once

#include <QPainterPath>

class QRectF;

namespace kelvo {

/// The start angle and the angular length of the ring in degrees; 0 is three o'clock, positive is anticlockwise. The ring
/// runs clockwise from twelve o'clock and leaves a gap of 26.4° just anticlockwise of twelve o'clock.
inline constexpr double gappedRingStart = 90.0;
inline constexpr double gappedRingSweep = -333.6;

/// Returns the centre line of the ring: a circular arc in the centre of `rect` (y points down) whose radius is half of the
/// smaller side. Returns an empty path when `rect` is empty.
QPainterPath gappedRing(const QRectF &rect);

} // namespace kelvo
