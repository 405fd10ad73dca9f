#include "style/RoundedRectangle.h"

#include "style/DevicePixels.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace kelvo {

RoundedRectangle::RoundedRectangle(QQuickItem *parent)
    : PaintedItem(parent)
{
    connect(this, &RoundedRectangle::colorChanged, this, &QQuickItem::update);
    connect(this, &RoundedRectangle::radiusChanged, this, &QQuickItem::update);
    connect(&border_, &RectangleBorder::colorChanged, this, &QQuickItem::update);
    connect(&border_, &RectangleBorder::widthChanged, this, &QQuickItem::update);
}

void RoundedRectangle::paint(QPainter *painter)
{
    if (boundingRect().isEmpty()) {
        return;
    }
    const auto toDevice = paintInDevicePixels(painter);
    const auto outer = onDevicePixels(toDevice.mapRect(boundingRect()));
    const auto factor = toDevice.m11();
    const auto border = border_.width > 0 ? std::max(1.0, std::round(border_.width * factor)) : 0.0;
    const auto radius = std::min({radius_ * factor, outer.width() / 2.0, outer.height() / 2.0});
    const auto inner = outer.adjusted(border, border, -border, -border);

    QPainterPath inside;
    if (!inner.isEmpty()) {
        inside.addRoundedRect(inner, std::max(0.0, radius - border), std::max(0.0, radius - border));
    }
    painter->fillPath(inside, color_);
    if (border > 0) {
        QPainterPath edge;
        edge.addRoundedRect(outer, radius, radius);
        edge.addPath(inside);
        painter->fillPath(edge, border_.color);
    }
}

} // namespace kelvo
