#include "windows/settings/PillShape.h"

#include <QPainter>

#include <algorithm>

namespace kelvo {

void PillShape::paint(QPainter *painter)
{
    const double radius = std::min(width(), height()) / 2;
    painter->setPen(Qt::NoPen);
    painter->setBrush(color());
    painter->drawRoundedRect(boundingRect(), radius, radius);
}

} // namespace kelvo
