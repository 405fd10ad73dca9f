#include "platform/LayerShell.h"

namespace kelvo {

void placeInCorner(QWindow &, Qt::Edges) { }

} // namespace kelvo
