#include "style/StatusDot.h"

#include <QPainter>

namespace kelvo {

void StatusDot::paint(QPainter *painter)
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(color());
    painter->drawEllipse(boundingRect());
}

} // namespace kelvo
