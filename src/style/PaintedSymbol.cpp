#include "style/PaintedSymbol.h"

#include <QPainter>

#include <cmath>

namespace kelvo {

namespace {

/// The nearest multiple of `step` away from `origin`.
double nearest(double value, double origin, double step)
{
    return origin + step * std::floor((value - origin) / step + 0.5);
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
    const auto toDevice = painter->deviceTransform();
    const auto rect = toDevice.mapRect(boundingRect());
    const QPointF centre(alignedCentre(rect.center().x(), rect.width()),
                         alignedCentre(rect.center().y(), rect.height()));
    painter->translate(toDevice.inverted().map(centre) - boundingRect().center());
}

double PaintedSymbol::alignedCentre(double centre, double) const
{
    return nearest(centre, 0, 0.5);
}

double PaintedSymbol::centreWithWholeEdges(double centre, double size)
{
    return nearest(centre, size / 2, 1);
}

} // namespace kelvo
