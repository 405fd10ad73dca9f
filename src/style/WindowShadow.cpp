#include "style/WindowShadow.h"

#include "style/DevicePixels.h"

#include <QPainter>

#include <array>
#include <cmath>
#include <numbers>
#include <vector>

namespace kelvo {

WindowShadow::WindowShadow(QQuickItem *parent)
    : PaintedItem(parent)
{
    connect(this, &WindowShadow::lookChanged, this, [this] {
        image_ = {};
        update();
    });
}

void WindowShadow::paint(QPainter *painter)
{
    const auto toDevice = paintInDevicePixels(painter);
    const auto rect = onDevicePixels(toDevice.mapRect(boundingRect())).toRect();
    const int corner = static_cast<int>(std::ceil(2 * blur_ * toDevice.m11()));
    if (blur_ <= 0 || rect.width() <= 2 * corner || rect.height() <= 2 * corner) {
        return;
    }
    if (image_.width() != 2 * corner + 1) {
        image_ = draw(corner);
    }
    const auto far = corner + 1;
    struct Part
    {
        int from;
        int length;
        int to;
        int drawnLength;
    };
    const std::array across{Part{0, corner, rect.left(), corner},
                            Part{corner, 1, rect.left() + corner, rect.width() - 2 * corner},
                            Part{far, corner, rect.left() + rect.width() - corner, corner}};
    const std::array down{Part{0, corner, rect.top(), corner},
                          Part{corner, 1, rect.top() + corner, rect.height() - 2 * corner},
                          Part{far, corner, rect.top() + rect.height() - corner, corner}};
    for (const auto &row : down) {
        for (const auto &column : across) {
            painter->drawImage(QRect(column.to, row.to, column.drawnLength, row.drawnLength), image_,
                               QRect(column.from, row.from, column.length, row.length));
        }
    }
}

/// A Gaussian blur of a rectangle is the product of the blurs of its sides. The round corners of the rectangle are not
/// visible after the blur.
QImage WindowShadow::draw(int corner) const
{
    const int side = 2 * corner + 1;
    const double blur = corner / 2.0;
    const double deviation = blur / 2.0;

    std::vector<double> profile;
    for (int i = 0; i < side; ++i) {
        const double fromEdge = std::min(i, side - 1 - i) + 0.5 - blur;
        profile.push_back(0.5 * (1 + std::erf(fromEdge / (deviation * std::numbers::sqrt2))));
    }

    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < side; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < side; ++x) {
            const double strength = profile[static_cast<std::size_t>(x)] * profile[static_cast<std::size_t>(y)];
            const int alpha = static_cast<int>(std::lround(strength * color_.alpha()));
            line[x] = qPremultiply(qRgba(color_.red(), color_.green(), color_.blue(), alpha));
        }
    }
    return image;
}

} // namespace kelvo
