#include "style/PaintedItem.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGRenderNode>
#include <QSGRendererInterface>

namespace kelvo {

namespace {

class Node : public QSGRenderNode
{
public:
    explicit Node(PaintedItem *item)
        : item_(item)
    {
    }

    RenderingFlags flags() const override { return BoundedRectRendering; }
    QRectF rect() const override { return item_->boundingRect(); }

    void render(const RenderState *state) override
    {
        auto *window = item_->window();
        auto *painter = static_cast<QPainter *>(
            window->rendererInterface()->getResource(window, QSGRendererInterface::PainterResource));
        const auto transform = matrix()->toTransform();
        clip(painter, *state->clipRegion(), transform.mapRect(rect()).toAlignedRect());
        painter->setTransform(transform);
        painter->setOpacity(inheritedOpacity());
        painter->setRenderHint(QPainter::Antialiasing);
        item_->align(painter);
        item_->paint(painter);
    }

private:
    /// Clips to a region, unless it contains all of the item. The edges of a rectangle are rounded to pixels; QPainter
    /// rounds the size of the rectangles of a region instead, which leaves gaps between them.
    static void clip(QPainter *painter, const QRegion &region, const QRect &bounds)
    {
        // QRegion::contains is true for a rectangle that is only partly inside.
        if (region.rectCount() == 1 && region.boundingRect().contains(bounds)) {
            return;
        }
        if (region.rectCount() == 1) {
            painter->setClipRect(QRectF(region.boundingRect()));
        } else {
            painter->setClipRegion(region);
        }
    }

    PaintedItem *item_;
};

} // namespace

PaintedItem::PaintedItem(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void PaintedItem::align(QPainter *) const { }

QSGNode *PaintedItem::updatePaintNode(QSGNode *node, UpdatePaintNodeData *)
{
    if (!node) {
        return new Node(this);
    }
    node->markDirty(QSGNode::DirtyGeometry | QSGNode::DirtyMaterial);
    return node;
}

} // namespace kelvo
