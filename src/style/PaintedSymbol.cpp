#include "style/PaintedSymbol.h"

#include <QPainter>

#include <cmath>

namespace kelvo {

namespace {

QPointF onGridOfHalfPixels(QPointF point)
{
    return {std::floor(2 * point.x() + 0.5) / 2, std::floor(2 * point.y() + 0.5) / 2};
}

} // namespace

void PaintedSymbol::setColor(const QColor &color)
{
    if (color == color_) {
        return;
    }
    color_ = color;
    Q_EMIT colorChanged();
    update();
}

void PaintedSymbol::align(QPainter *painter) const
{
    const auto centre = boundingRect().center();
    const auto toDevice = painter->deviceTransform();
    painter->translate(toDevice.inverted().map(onGridOfHalfPixels(toDevice.map(centre))) - centre);
}

} // namespace kelvo
