#pragma once

#include <QPainterPath>

class QRectF;

namespace kelvo {

/// Where the ring begins and how far it goes, in degrees; positive is anticlockwise, zero is three o'clock. From twelve
/// o'clock the long way round, clockwise, to a gap of 26.4° just anticlockwise of twelve.
inline constexpr double gappedRingStart = 90.0;
inline constexpr double gappedRingSweep = -333.6;

/// The centre line of the ring in `rect` (y down): centred, circular, its radius half the smaller side. Empty when
/// `rect` is.
QPainterPath gappedRing(const QRectF &rect);

} // namespace kelvo
