#include "menubar/popover/PopoverPlacement.h"

#include <QMargins>

#include <algorithm>

namespace kelvo::PopoverPlacement {

namespace {

constexpr int gap = 6;

/// Moves `position` by the smallest distance such that `length` from there is within [`first`, `last`].
int clamped(int position, int length, int first, int last)
{
    return std::max(first, std::min(position, last - length + 1));
}

/// More than the thickness of a panel and the size of an item in it.
constexpr int panelThickness = 64;

/// Some bars report the point relative to the item instead of the screen. Near the origin it cannot be trusted.
bool isRelativeToItem(const QPoint &point)
{
    return point.x() < panelThickness && point.y() < panelThickness;
}

bool isOnScreen(const QPoint &point, const QList<QRect> &screens)
{
    return std::any_of(screens.begin(), screens.end(),
                       [&point](const QRect &screen) { return screen.contains(point); });
}

/// Whether the point is at the edge of its screen, where the panels are.
bool isAtEdge(const QPoint &point, const QList<QRect> &screens)
{
    return std::any_of(screens.begin(), screens.end(), [&point](const QRect &screen) {
        constexpr QMargins panels(panelThickness, panelThickness, panelThickness, panelThickness);
        return screen.contains(point) && !screen.marginsRemoved(panels).contains(point);
    });
}

} // namespace

std::optional<QRect> anchor(const RingPlace &ring, const std::optional<QPoint> &pointer, const QList<QRect> &screens)
{
    if (!ring.rectangle.isEmpty()) {
        return ring.rectangle;
    }
    if (ring.clicked && !isRelativeToItem(*ring.clicked) && isOnScreen(*ring.clicked, screens)) {
        return QRect(*ring.clicked, QSize(1, 1));
    }
    // A key on the panel can click the ring as well. Then the pointer may be anywhere.
    if (pointer && isAtEdge(*pointer, screens)) {
        return QRect(*pointer, QSize(1, 1));
    }
    return std::nullopt;
}

QPoint beside(const QRect &anchor, const QSize &size, const QRect &screen, const QRect &available)
{
    const bool isAbove = anchor.center().y() > screen.center().y();
    const int x = anchor.center().x() - size.width() / 2;
    const int y = isAbove ? std::min(anchor.top(), available.bottom() + 1) - gap - size.height()
                          : std::max(anchor.bottom() + 1, available.top()) + gap;
    return {clamped(x, size.width(), available.left() + gap, available.right() - gap),
            clamped(y, size.height(), available.top(), available.bottom())};
}

Qt::Edges nearestCorner(const QRect &anchor, const QRect &screen)
{
    const auto point = anchor.center();
    const auto middle = screen.center();
    return (point.y() > middle.y() ? Qt::BottomEdge : Qt::TopEdge)
        | (point.x() > middle.x() ? Qt::RightEdge : Qt::LeftEdge);
}

QMargins roomInCorner(Qt::Edges corner)
{
    const auto room = [corner](Qt::Edge edge) {
        constexpr int unlimited = 1000; // more than any shadow
        return corner.testFlag(edge) ? gap : unlimited;
    };
    return {room(Qt::LeftEdge), room(Qt::TopEdge), room(Qt::RightEdge), room(Qt::BottomEdge)};
}

QRect panelCorner(const QRect &screen, const QRect &available)
{
    const int above = available.top() - screen.top();
    const int below = screen.bottom() - available.bottom();
    const int left = available.left() - screen.left();
    const int right = screen.right() - available.right();
    const int horizontal = std::max(above, below);
    const int vertical = std::max(left, right);

    const bool isBottom = vertical > horizontal || below > above;
    const bool isLeft = vertical > horizontal && left > right;
    return {isLeft ? screen.left() : screen.right(), isBottom ? screen.bottom() : screen.top(), 0, 0};
}

} // namespace kelvo::PopoverPlacement
