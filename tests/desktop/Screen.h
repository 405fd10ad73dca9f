#pragma once

#include "monitor/RingState.h"

#include <QImage>
#include <QRect>

#include <optional>

namespace kelvo {

/// Inspects the pixels of the screen.
namespace Screen {

/// Returns a picture of the whole screen.
QImage picture();

/// Finds the ring in the dark bar at the top of the screen, by the exact colour of its dot, the white ring around it and
/// the gap just left of twelve o'clock. Returns nullopt when it is not there. Cannot find `inactive`, whose dot has no
/// colour; use `barChangeSince`.
std::optional<QRect> findRing(RingState state);

/// Returns the smallest rectangle that contains every pixel of the bar that differs from `before`.
QRect barChangeSince(const QImage &before);

} // namespace Screen

} // namespace kelvo
