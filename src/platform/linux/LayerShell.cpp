#include "platform/LayerShell.h"

#include <LayerShellQt/window.h>

#include <QWindow>

namespace kelvo {

void placeInCorner(QWindow &window, Qt::Edges corner)
{
    using Layer = LayerShellQt::Window;
    Layer::Anchors anchors;
    anchors.setFlag(corner.testFlag(Qt::TopEdge) ? Layer::AnchorTop : Layer::AnchorBottom);
    anchors.setFlag(corner.testFlag(Qt::LeftEdge) ? Layer::AnchorLeft : Layer::AnchorRight);

    auto *layer = Layer::get(&window);
    layer->setLayer(Layer::LayerTop);
    layer->setAnchors(anchors);
    // The popover takes the focus when it appears, and a click elsewhere takes it away.
    layer->setKeyboardInteractivity(Layer::KeyboardInteractivityOnDemand);
}

} // namespace kelvo
