#include "style/GappedRingItem.h"

#include "style/GappedRing.h"

#include <QPainter>

namespace kelvo {

void GappedRingItem::setLineWidth(qreal width)
{
    lineWidth_ = width;
    Q_EMIT lineWidthChanged();
    update();
}

void GappedRingItem::setInset(qreal inset)
{
    inset_ = inset;
    Q_EMIT insetChanged();
    update();
}

void GappedRingItem::paint(QPainter *painter)
{
    painter->setPen(QPen(color(), lineWidth_, Qt::SolidLine, Qt::RoundCap));
    painter->drawPath(gappedRing(boundingRect().adjusted(inset_, inset_, -inset_, -inset_)));
}

} // namespace kelvo
