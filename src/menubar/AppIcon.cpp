#include "menubar/AppIcon.h"

#include "style/GappedRing.h"
#include "style/PaintedIcon.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace kelvo::AppIcon {

namespace {

// Lengths in a grid of 128 × 128 units, as in the installed SVG.
constexpr double grid = 128.0;
constexpr QRectF ground(8, 8, 112, 112);
constexpr double groundRadius = 26.0;
constexpr QRectF ring(28, 28, 72, 72);
constexpr double ringWidth = 4.725;
constexpr double dotRadius = 9.225;

void draw(QPainter &painter, const QRectF &rect)
{
    const double unit = std::min(rect.width(), rect.height()) / grid;
    painter.translate(rect.center());
    painter.scale(unit, unit);
    painter.translate(-grid / 2, -grid / 2);

    QLinearGradient night(ground.topLeft(), ground.bottomLeft());
    night.setColorAt(0, QColor::fromRgb(0xff34363d));
    night.setColorAt(1, QColor::fromRgb(0xff1d1e22));
    painter.setPen(Qt::NoPen);
    painter.setBrush(night);
    painter.drawRoundedRect(ground, groundRadius, groundRadius);

    QColor line = QColor::fromRgb(0xfff5f5f7);
    line.setAlphaF(0.92F);
    painter.strokePath(gappedRing(ring), QPen(line, ringWidth, Qt::SolidLine, Qt::RoundCap));

    painter.setBrush(QColor::fromRgb(0xff32d74b));
    painter.drawEllipse(ground.center(), dotRadius, dotRadius);
}

} // namespace

QIcon image()
{
    return paintedIcon(draw, {16, 24, 32, 48, 64, 128});
}

} // namespace kelvo::AppIcon
