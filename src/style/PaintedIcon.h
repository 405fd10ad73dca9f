#pragma once

#include <QIcon>

#include <functional>

class QPainter;
class QRectF;

namespace kelvo {

/// An icon that `paint` draws into a rectangle whenever it is asked for, so that it is sharp at every size and scale;
/// never tinted. `sizes` is what it says to those who want a list, squares in pixels.
QIcon paintedIcon(std::function<void(QPainter &, const QRectF &)> paint, const QList<int> &sizes);

} // namespace kelvo
