#include "style/StatusDot.h"

#include <QPainter>

#include <cmath>

namespace kelvo {

void StatusDot::paint(QPainter *painter)
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(color());
    painter->drawEllipse(boundingRect());
}

double StatusDot::alignedCentre(double centre, double size) const
{
    const bool isWhole = std::abs(size - std::round(size)) < 0.01;
    return isWhole ? centreWithWholeEdges(centre, std::round(size)) : PaintedSymbol::alignedCentre(centre, size);
}

} // namespace kelvo
