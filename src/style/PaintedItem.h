#pragma once

#include <QQuickItem>

class QPainter;

namespace kelvo {

/// An item that paints itself with QPainter, directly into the window. On the software scene graph, the rectangles and
/// painted items of Qt Quick are rounded to whole points and leave gaps when a point is not a whole number of pixels.
class PaintedItem : public QQuickItem
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit PaintedItem(QQuickItem *parent = nullptr);

    /// Paints the item. The coordinates are the item's, in points.
    virtual void paint(QPainter *painter) = 0;

    /// Called before `paint`: moves the coordinates to the grid of pixels. By itself it does nothing.
    virtual void align(QPainter *painter) const;

protected:
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;
};

} // namespace kelvo
