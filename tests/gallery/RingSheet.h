#pragma once

#include <QImage>

namespace kelvo {

/// Returns a picture of every state of the ring on light and dark bars: large, and as it looks on screens with one and
/// with two pixels per point. The picture has two pixels per point.
QImage ringSheet();

} // namespace kelvo
