#pragma once

#include "monitor/RingState.h"

#include <QImage>
#include <QRect>

#include <optional>

namespace kelvo {

/// The desktop as a person sees it.
namespace Screen {

/// All of it, at this moment.
QImage picture();

/// Where the ring of that state stands in the bar at the top of the screen, which is dark: found by the exact colour of
/// its dot, with the ring's white around it and the gap just left of twelve o'clock. Nothing when it is not there.
/// `inactive` has no colour to be found by: see `barChangeSince`.
std::optional<QRect> findRing(RingState state);

/// The smallest rectangle that holds every pixel of the bar in which the screen differs from `before`.
QRect barChangeSince(const QImage &before);

} // namespace Screen

} // namespace kelvo
