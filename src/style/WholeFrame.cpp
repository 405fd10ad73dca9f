#include "style/WholeFrame.h"

#include "style/DevicePixels.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSGRenderNode>
#include <QSGRendererInterface>
#include <QtMath>

#include <cmath>

namespace kelvo {

class WholeFrame::Node : public QSGRenderNode
{
public:
    explicit Node(WholeFrame *item)
        : item_(item)
    {
    }

    RenderingFlags flags() const override { return BoundedRectRendering; }
    QRectF rect() const override { return isNeeded() ? QRectF(QPointF(), QSizeF(item_->window()->size())) : QRectF(); }

    bool isNeeded() const
    {
        const auto scale = item_->window()->effectiveDevicePixelRatio();
        return std::abs(scale - std::round(scale)) > 0.001;
    }

    void render(const RenderState *) override
    {
        auto *window = item_->window();
        auto *painter = static_cast<QPainter *>(
            window->rendererInterface()->getResource(window, QSGRendererInterface::PainterResource));
        if (isNeeded()) {
            continueToTheEdges(*painter);
        }
    }

private:
    /// Repeats the last pixels of each line in the strips that the scene graph does not paint.
    static void continueToTheEdges(QPainter &painter)
    {
        const auto *image = dynamic_cast<QImage *>(painter.device());
        if (!image) {
            return;
        }
        const auto scale = image->devicePixelRatio();
        const int right = qFloor(scale * std::floor(image->width() / scale));
        const int bottom = qFloor(scale * std::floor(image->height() / scale));
        paintInDevicePixels(&painter);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        repeat(painter, *image, {right - 1, 0, 1, image->height()},
               {right, 0, image->width() - right, image->height()});
        repeat(painter, *image, {0, bottom - 1, image->width(), 1},
               {0, bottom, image->width(), image->height() - bottom});
    }

    static void repeat(QPainter &painter, const QImage &image, const QRect &line, const QRect &strip)
    {
        if (!strip.isEmpty()) {
            painter.drawImage(strip, image.copy(line));
        }
    }

    WholeFrame *item_;
};

WholeFrame::WholeFrame(QQuickWindow &window)
    : QQuickItem(window.contentItem())
{
    setFlag(ItemHasContents);
    constexpr int aboveEverything = 2'000'000;
    setZ(aboveEverything);
    // Marked now and not with update(), which would request another frame. The node is there from the first synchronization
    // on: when the window drops its nodes, it asks for new ones before the next.
    const auto repaint = [this] {
        if (node_ && node_->isNeeded()) {
            node_->markDirty(QSGNode::DirtyGeometry);
        }
    };
    connect(&window, &QQuickWindow::afterSynchronizing, this, repaint, Qt::DirectConnection);
}

QSGNode *WholeFrame::updatePaintNode(QSGNode *node, UpdatePaintNodeData *)
{
    if (!node) {
        node_ = new Node(this);
        return node_;
    }
    return node;
}

} // namespace kelvo
