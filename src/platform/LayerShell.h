#pragma once

#include <Qt>

class QWindow;

namespace kelvo {

/// Makes the window, which was not shown yet, one that the compositor places in a corner of its screen, beside the panels.
/// `corner` has one vertical and one horizontal edge. Has no effect in builds without the layer shell.
void placeInCorner(QWindow &window, Qt::Edges corner);

} // namespace kelvo
