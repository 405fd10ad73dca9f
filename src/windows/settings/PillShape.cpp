#include "windows/settings/PillShape.h"

#include <QPainter>

#include <algorithm>

namespace kelvo {

namespace {

void drawPill(QPainter &painter, const QRectF &rectangle)
{
    const double radius = std::min(rectangle.width(), rectangle.height()) / 2;
    painter.drawRoundedRect(rectangle, radius, radius);
}

} // namespace

PillShape::PillShape(QQuickItem *parent)
    : PaintedSymbol(parent)
{
    connect(this, &PillShape::lineChanged, this, &QQuickItem::update);
}

void PillShape::paint(QPainter *painter)
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(color());
    drawPill(*painter, boundingRect());
    if (lineWidth_ > 0) {
        const double inset = lineWidth_ / 2;
        painter->setPen(QPen(lineColor_, lineWidth_));
        painter->setBrush(Qt::NoBrush);
        drawPill(*painter, boundingRect().adjusted(inset, inset, -inset, -inset));
    }
}

} // namespace kelvo
