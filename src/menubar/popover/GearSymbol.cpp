#include "menubar/popover/GearSymbol.h"

#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include <algorithm>

namespace kelvo {

namespace {

// Lengths in a grid of 24 × 24 units, angles in degrees.
constexpr double grid = 24.0;
constexpr double lineWidth = 1.7;
constexpr double hubRadius = 3.5;
constexpr double rootRadius = 7.7;
constexpr double tipRadius = 10.7;
constexpr int teeth = 8;
constexpr double pitch = 360.0 / teeth;
constexpr double halfToothAtRoot = 12.5;
constexpr double halfToothAtTip = 7.5;

QPointF onCircle(double radius, double degrees)
{
    return QTransform().rotate(degrees).map(QPointF(0, -radius));
}

/// A closed outline with teeth, and the hub.
QPainterPath gear()
{
    const QRectF root(-rootRadius, -rootRadius, 2 * rootRadius, 2 * rootRadius);
    QPainterPath path;
    path.moveTo(onCircle(rootRadius, -halfToothAtRoot));
    for (int tooth = 0; tooth < teeth; ++tooth) {
        const auto middle = pitch * tooth;
        path.lineTo(onCircle(tipRadius, middle - halfToothAtTip));
        path.lineTo(onCircle(tipRadius, middle + halfToothAtTip));
        // Begins with a line to the arc. QPainterPath counts angles anticlockwise from three o'clock.
        path.arcTo(root, 90 - middle - halfToothAtRoot, -(pitch - 2 * halfToothAtRoot));
    }
    path.closeSubpath();
    path.addEllipse(QPointF(), hubRadius, hubRadius);
    return path;
}

} // namespace

// A single path, so that a translucent colour is not drawn twice where lines meet.
void GearSymbol::paint(QPainter *painter)
{
    const double unit = std::min(width(), height()) / grid;
    painter->translate(boundingRect().center());
    painter->scale(unit, unit);
    painter->setPen(QPen(color(), lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPath(gear());
}

} // namespace kelvo
