#pragma once

#include <QImage>

namespace kelvo {

/// Every state of the ring on light and dark bars: large, and as screens of one and two pixels a point show it.
/// The picture is one of two pixels a point.
QImage ringSheet();

} // namespace kelvo
