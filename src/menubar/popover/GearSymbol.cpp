#include "menubar/popover/GearSymbol.h"

#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include <algorithm>

namespace kelvo {

namespace {

// Lengths in a grid of 24 × 24 units.
constexpr double grid = 24.0;
constexpr double lineWidth = 2.0;
constexpr double wheelRadius = 7.3;
constexpr double hubRadius = 3.4;
constexpr double toothEnd = 10.6;
constexpr int teeth = 8;

QPainterPath gear()
{
    QPainterPath path;
    path.addEllipse(QPointF(), wheelRadius, wheelRadius);
    path.addEllipse(QPointF(), hubRadius, hubRadius);
    for (int tooth = 0; tooth < teeth; ++tooth) {
        const auto turn = QTransform().rotate(360.0 * tooth / teeth);
        path.moveTo(turn.map(QPointF(0, -wheelRadius)));
        path.lineTo(turn.map(QPointF(0, -toothEnd)));
    }
    return path;
}

} // namespace

// A single path, so that a translucent colour is not drawn twice where lines meet.
void GearSymbol::paint(QPainter *painter)
{
    const double unit = std::min(width(), height()) / grid;
    painter->translate(boundingRect().center());
    painter->scale(unit, unit);
    painter->setPen(QPen(color(), lineWidth, Qt::SolidLine, Qt::RoundCap));
    painter->drawPath(gear());
}

} // namespace kelvo
