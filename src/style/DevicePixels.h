#pragma once

#include <QRectF>
#include <QTransform>

class QPainter;

namespace kelvo {

/// Makes `painter` paint in device pixels, and returns the transformation of its former coordinates to device pixels.
QTransform paintInDevicePixels(QPainter *painter);

/// The rectangle with its edges on whole pixels. A line has the same width, at least one pixel, wherever it is.
QRectF onDevicePixels(const QRectF &rect);

} // namespace kelvo
