#pragma once

#include <QQuickItem>

class QQuickWindow;

namespace kelvo {

/// Makes a window paint all of itself in every frame while a point is not a whole number of device pixels.
///
/// The software scene graph paints only the regions that change. It describes them in points and rounds position and size
/// of each rectangle separately, so that lines between them would not be painted, or not be flushed to the screen. It
/// also rounds the size of the window down, so that a strip at the right and the lower edge would not be painted.
/// Rectangle of Qt Quick must not be opaque in such a window, because what it covers would be left out.
class WholeFrame : public QQuickItem
{
    Q_OBJECT

public:
    /// The window owns this object.
    explicit WholeFrame(QQuickWindow &window);

protected:
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;

private:
    class Node;
    Node *node_ = nullptr;
};

} // namespace kelvo
