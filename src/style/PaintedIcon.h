#pragma once

#include <QIcon>

#include <functional>

class QPainter;
class QRectF;

namespace kelvo {

/// Returns an icon that calls `paint` for each requested size, so that it is sharp at every size and scale. It is not
/// tinted. `sizes` is the list of sizes that the icon reports (squares, side in pixels).
QIcon paintedIcon(std::function<void(QPainter &, const QRectF &)> paint, const QList<int> &sizes);

} // namespace kelvo
