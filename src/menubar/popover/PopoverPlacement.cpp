#include "menubar/popover/PopoverPlacement.h"

#include <algorithm>

namespace kelvo::PopoverPlacement {

namespace {

constexpr int gap = 6;

/// Moves `position` by the smallest distance such that `length` from there is within [`first`, `last`].
int clamped(int position, int length, int first, int last)
{
    return std::max(first, std::min(position, last - length + 1));
}

} // namespace

QPoint beside(const QRect &anchor, const QSize &size, const QRect &screen, const QRect &available)
{
    const bool isAbove = anchor.center().y() > screen.center().y();
    const int x = anchor.center().x() - size.width() / 2;
    const int y = isAbove ? std::min(anchor.top(), available.bottom() + 1) - gap - size.height()
                          : std::max(anchor.bottom() + 1, available.top()) + gap;
    return {clamped(x, size.width(), available.left() + gap, available.right() - gap),
            clamped(y, size.height(), available.top(), available.bottom())};
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
