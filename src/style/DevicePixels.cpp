#include "style/DevicePixels.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kelvo {

namespace {

// Halves are rounded up, also below zero, so that rounding does not depend on where the window begins.
double rounded(double value)
{
    return std::floor(value + 0.5);
}

struct Extent
{
    double start;
    double length;
};

Extent onDevicePixels(double start, double length)
{
    constexpr double thickestLine = 4.5;
    const auto first = rounded(start);
    if (length < thickestLine) {
        return {first, std::max(1.0, rounded(length))};
    }
    return {first, rounded(start + length) - first};
}

} // namespace

QTransform paintInDevicePixels(QPainter *painter)
{
    const auto toDevice = painter->deviceTransform();
    const auto pixelsPerPoint = painter->device()->devicePixelRatio();
    painter->setTransform(QTransform::fromScale(1 / pixelsPerPoint, 1 / pixelsPerPoint));
    return toDevice;
}

QRectF onDevicePixels(const QRectF &rect)
{
    const auto [left, width] = onDevicePixels(rect.left(), rect.width());
    const auto [top, height] = onDevicePixels(rect.top(), rect.height());
    return {left, top, width, height};
}

} // namespace kelvo
