#include "style/WindowShadow.h"

#include <QQuickWindow>
#include <QSGNinePatchNode>

#include <cmath>
#include <numbers>
#include <vector>

namespace kelvo {

WindowShadow::WindowShadow(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &WindowShadow::lookChanged, this, &QQuickItem::update);
}

QSGNode *WindowShadow::updatePaintNode(QSGNode *node, UpdatePaintNodeData *)
{
    auto *patch = static_cast<QSGNinePatchNode *>(node);
    if (!patch) {
        patch = window()->createNinePatchNode();
    }
    const int corner = 2 * blur_;
    patch->setTexture(window()->createTextureFromImage(draw(), QQuickWindow::TextureHasAlphaChannel));
    patch->setBounds(boundingRect());
    patch->setDevicePixelRatio(1);
    patch->setPadding(corner, corner, corner, corner);
    patch->update();
    return patch;
}

/// Draws the four corners with one stretchable pixel between them. A Gaussian blur of a rectangle is the product of the
/// blurs of its sides. The round corners of the rectangle are not visible after the blur.
QImage WindowShadow::draw() const
{
    const int corner = 2 * blur_;
    const int side = 2 * corner + 1;
    const double deviation = blur_ / 2.0;

    std::vector<double> profile;
    for (int i = 0; i < side; ++i) {
        const double fromEdge = std::min(i, side - 1 - i) + 0.5 - blur_;
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
