#include "style/PaintedItem.h"

#include <QPainter>
#include <QPointer>
#include <QQuickWindow>
#include <QSGRenderNode>
#include <QSGRendererInterface>

#include <set>

namespace kelvo {

namespace {

/// Lets a window paint all of its nodes in each frame in which it paints at all. When a part of the window has changed, the
/// software renderer paints a render node completely, but what is above it only in that part.
class WholeFrames : public QObject
{
public:
    static WholeFrames *of(QQuickWindow *window)
    {
        const auto name = QStringLiteral("wholeFrames");
        auto *frames = window->findChild<QObject *>(name, Qt::FindDirectChildrenOnly);
        return frames ? static_cast<WholeFrames *>(frames) : new WholeFrames(window, name);
    }

    void add(QSGNode *node) { nodes_.insert(node); }
    void remove(QSGNode *node) { nodes_.erase(node); }

private:
    WholeFrames(QQuickWindow *window, const QString &name)
        : QObject(window)
    {
        setObjectName(name);
        connect(window, &QQuickWindow::beforeRendering, this, &WholeFrames::markAllDirty);
    }

    void markAllDirty()
    {
        for (auto *node : nodes_) {
            auto *root = node;
            while (root->parent()) {
                root = root->parent();
            }
            // The nodes of invisible items are not in the tree of the window.
            if (root->type() == QSGNode::RootNodeType) {
                markDirty(root);
                return;
            }
        }
    }

    static void markDirty(QSGNode *node)
    {
        node->markDirty(QSGNode::DirtyMaterial);
        for (auto *child = node->firstChild(); child; child = child->nextSibling()) {
            markDirty(child);
        }
    }

    std::set<QSGNode *> nodes_;
};

class Node : public QSGRenderNode
{
public:
    explicit Node(PaintedItem *item)
        : item_(item)
        , frames_(WholeFrames::of(item->window()))
    {
        frames_->add(this);
    }
    ~Node() override
    {
        if (frames_) {
            frames_->remove(this);
        }
    }
    Node(const Node &) = delete;
    Node &operator=(const Node &) = delete;

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
        if (region.rectCount() > 1) {
            painter->setClipRegion(region);
        } else if (!region.boundingRect().contains(bounds)) {
            painter->setClipRect(QRectF(region.boundingRect()));
        }
    }

    PaintedItem *item_;
    QPointer<WholeFrames> frames_;
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
