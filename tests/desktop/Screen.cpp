#include "Screen.h"

#include <QColor>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

#include <cmath>
#include <numbers>

namespace kelvo::Screen {

namespace {

constexpr int barHeight = 28;

QColor dotOnDarkBar(RingState state)
{
    switch (state) {
    case RingState::available: return QColor(50, 215, 75);
    case RingState::outage: return QColor(255, 69, 58);
    case RingState::recovering: return QColor(255, 159, 10);
    case RingState::inactive: break;
    }
    return {};
}

QRect boundsOf(const QImage &picture, QRgb colour)
{
    QRect bounds;
    for (int y = 0; y < barHeight; ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) == colour) {
                bounds |= QRect(x, y, 1, 1);
            }
        }
    }
    return bounds;
}

/// Returns the point on the centre line of the ring at `degrees` clockwise from twelve o'clock.
QPoint onRing(QPointF centre, double radius, double degrees)
{
    const double angle = degrees * std::numbers::pi / 180;
    return QPointF(centre.x() + radius * std::sin(angle), centre.y() - radius * std::cos(angle)).toPoint();
}

} // namespace

QImage picture()
{
    return QGuiApplication::primaryScreen()->grabWindow().toImage().convertToFormat(QImage::Format_RGB32);
}

std::optional<QRect> findRing(RingState state)
{
    const auto screen = picture();
    const auto dot = boundsOf(screen, dotOnDarkBar(state).rgb());
    if (dot.width() < 4 || std::abs(dot.width() - dot.height()) > 1) {
        return std::nullopt;
    }
    // In the grid of 32 units, the diameter of the dot is 10.4 and the radius of the ring is 11. The outermost pixels of
    // the dot are blended and not part of `dot`.
    const double unit = (dot.width() + 1) / 10.4;
    const double radius = 11 * unit;
    const QPointF centre = QRectF(dot).center() - QPointF(0.5, 0.5);
    const int background = qGray(screen.pixel(onRing(centre, 7.5 * unit, 90)));
    for (const double degrees : {30.0, 90.0, 135.0, 180.0, 225.0, 270.0, 310.0}) {
        if (qGray(screen.pixel(onRing(centre, radius, degrees))) < 200) {
            return std::nullopt;
        }
    }
    // The gap spans 26.4 degrees, minus the round caps. Check its middle.
    const bool hasGap = qGray(screen.pixel(onRing(centre, radius, -13.2))) < (255 + background) / 2;
    const auto outer = radius + 1.7 * unit;
    return hasGap ? std::optional(QRectF(centre - QPointF(outer, outer), QSizeF(2 * outer, 2 * outer)).toAlignedRect())
                  : std::nullopt;
}

QRect barChangeSince(const QImage &before)
{
    const auto after = picture();
    QRect bounds;
    for (int y = 0; y < barHeight; ++y) {
        for (int x = 0; x < after.width(); ++x) {
            if (after.pixel(x, y) != before.pixel(x, y)) {
                bounds |= QRect(x, y, 1, 1);
            }
        }
    }
    return bounds;
}

} // namespace kelvo::Screen
