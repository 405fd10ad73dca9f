#include "menubar/MenuBarIcon.h"

#include "style/GappedRing.h"
#include "style/PaintedIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include <algorithm>
#include <array>
#include <optional>

namespace kelvo::MenuBarIcon {

namespace {

// Lengths in a grid of 32 × 32 units.
constexpr double grid = 32.0;
constexpr double ringRadius = 11.0;
constexpr double ringWidth = 3.4;
constexpr double dotRadius = 5.2;
constexpr double hollowDotRadius = dotRadius - 1.0;
constexpr double hollowDotWidth = 2.0;

constexpr float inactiveAlpha = 0.45F;

struct CoreColor
{
    QRgb onLightBar;
    QRgb onDarkBar;
};

// Indexed by RingState. The colour for a light bar is the darker one of each pair, for contrast. A state without
// colours has a hollow dot.
constexpr std::array<std::optional<CoreColor>, 4> coreColors{
    CoreColor{0xff248a3d, 0xff32d74b}, // available
    CoreColor{0xffd70015, 0xffff453a}, // outage
    CoreColor{0xffb25000, 0xffff9f0a}, // recovering
    std::nullopt,                      // inactive
};

std::optional<QColor> coreColor(RingState state, bool onDarkBar)
{
    const auto &pair = coreColors.at(static_cast<std::size_t>(state));
    if (!pair) {
        return std::nullopt;
    }
    return QColor::fromRgb(onDarkBar ? pair->onDarkBar : pair->onLightBar);
}

QColor labelColor(RingState state, bool onDarkBar)
{
    QColor color(onDarkBar ? Qt::white : Qt::black);
    if (state == RingState::inactive) {
        color.setAlphaF(inactiveAlpha);
    }
    return color;
}

QRectF square(double halfSide)
{
    return {-halfSide, -halfSide, 2 * halfSide, 2 * halfSide};
}

// QPainter flattens curves with a tolerance of a fraction of a device pixel, always towards the inside. At these sizes
// the glyph would lose three per cent of its area, so the curves are flattened here, more finely.
constexpr double fineness = 64.0;

QPainterPath flattened(const QPainterPath &path)
{
    const QTransform finer = QTransform::fromScale(fineness, fineness);
    QPainterPath result;
    result.setFillRule(Qt::WindingFill);
    for (const QPolygonF &polygon : path.toSubpathPolygons(finer)) {
        result.addPolygon(finer.inverted().map(polygon));
    }
    return result;
}

QPainterPath stroke(const QPainterPath &line, double width)
{
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setCurveThreshold(1.0 / fineness);
    return stroker.createStroke(line);
}

QPainterPath circle(double radius)
{
    QPainterPath path;
    path.addEllipse(square(radius));
    return path;
}

void draw(QPainter &painter, const QRectF &rect, RingState state, bool onDarkBar)
{
    const QColor label = labelColor(state, onDarkBar);
    const double unit = std::min(rect.width(), rect.height()) / grid;

    painter.translate(rect.center());
    painter.scale(unit, unit);

    painter.fillPath(flattened(stroke(gappedRing(square(ringRadius)), ringWidth)), label);
    if (const auto core = coreColor(state, onDarkBar)) {
        painter.fillPath(flattened(circle(dotRadius)), *core);
    } else {
        painter.fillPath(flattened(stroke(circle(hollowDotRadius), hollowDotWidth)), label);
    }
}

// Qt sends these sizes to a tray on D-Bus, which scales them for other sizes. They are the usual sizes of bars at scale
// 1 and 2: 16, 22, 24 and 32 pixels, and 18 points on macOS. Qt does not send sizes above 64.
const QList<int> sizes{16, 18, 22, 24, 32, 36, 44, 48, 64};

} // namespace

QIcon image(RingState state, bool onDarkBar)
{
    return paintedIcon(
        [state, onDarkBar](QPainter &painter, const QRectF &rect) { draw(painter, rect, state, onDarkBar); }, sizes);
}

} // namespace kelvo::MenuBarIcon
