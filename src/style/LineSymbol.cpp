#include "style/LineSymbol.h"

#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include <algorithm>

namespace kelvo {

namespace {

// The symbols are drawn in a grid of 24 × 24 units.
constexpr double grid = 24.0;
constexpr QPointF centre(12, 12);

/// Adds a dot that is as wide as the line. Its length must not be zero, because QPainter does not draw such a line.
void addDot(QPainterPath &path, QPointF at)
{
    path.moveTo(at);
    path.lineTo(at + QPointF(0.001, 0));
}

void addLine(QPainterPath &path, std::initializer_list<QPointF> points)
{
    path.moveTo(*points.begin());
    std::for_each(points.begin() + 1, points.end(), [&path](QPointF point) { path.lineTo(point); });
}

QPainterPath bell()
{
    QPainterPath path;
    path.moveTo(4, 17.5);
    path.cubicTo({6, 15.5}, {6, 13}, {6, 9.5});
    path.cubicTo({6, 5.5}, {8.6, 3}, {12, 3});
    path.cubicTo({15.4, 3}, {18, 5.5}, {18, 9.5});
    path.cubicTo({18, 13}, {18, 15.5}, {20, 17.5});
    path.closeSubpath();
    path.moveTo(9.9, 20.6);
    path.cubicTo({10.5, 21.6}, {13.5, 21.6}, {14.1, 20.6});
    return path;
}

QPainterPath check()
{
    QPainterPath path;
    addLine(path, {{4.5, 12.8}, {9.6, 18}, {19.5, 6.5}});
    return path;
}

QPainterPath checkInCircle()
{
    QPainterPath path;
    path.addEllipse(centre, 10.6, 10.6);
    addLine(path, {{7.4, 12.6}, {10.6, 15.8}, {16.6, 8.6}});
    return path;
}

QPainterPath grip()
{
    QPainterPath path;
    for (const double x : {8.0, 16.0}) {
        for (const double y : {4.0, 12.0, 20.0}) {
            addDot(path, {x, y});
        }
    }
    return path;
}

QPainterPath info()
{
    QPainterPath path;
    path.addEllipse(centre, 10.6, 10.6);
    addLine(path, {{12, 11.2}, {12, 17}});
    addDot(path, {12, 7});
    return path;
}

QPainterPath outline(LineSymbol::Shape shape)
{
    switch (shape) {
    case LineSymbol::Bell: return bell();
    case LineSymbol::Check: return check();
    case LineSymbol::CheckInCircle: return checkInCircle();
    case LineSymbol::Grip: return grip();
    case LineSymbol::Info: return info();
    }
    Q_UNREACHABLE();
}

} // namespace

LineSymbol::LineSymbol(QQuickItem *parent)
    : PaintedSymbol(parent)
{
    connect(this, &LineSymbol::lookChanged, this, &QQuickItem::update);
}

// A single path, so that a translucent colour is not drawn twice where lines meet.
void LineSymbol::paint(QPainter *painter)
{
    const double unit = std::min(width(), height()) / grid;
    const auto scale = QTransform::fromScale(unit, unit);
    painter->translate(boundingRect().center() - scale.map(centre));
    painter->setPen(QPen(color(), lineWidth_, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPath(scale.map(outline(shape_)));
}

} // namespace kelvo
