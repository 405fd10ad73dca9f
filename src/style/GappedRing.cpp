#include "style/GappedRing.h"

#include <QRectF>

#include <algorithm>

namespace kelvo {

QPainterPath gappedRing(const QRectF &rect)
{
    QPainterPath path;
    if (rect.isEmpty()) {
        return path;
    }
    const double side = std::min(rect.width(), rect.height());
    QRectF circle(0, 0, side, side);
    circle.moveCenter(rect.center());
    path.arcMoveTo(circle, gappedRingStart);
    path.arcTo(circle, gappedRingStart, gappedRingSweep);
    return path;
}

} // namespace kelvo
