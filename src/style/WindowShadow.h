#pragma once

#include <QColor>
#include <QQuickItem>

namespace kelvo {

/// The soft shadow of the item's rectangle, reduced by `blur` on each side. It is drawn as a small nine-patch image.
class WindowShadow : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY lookChanged FINAL)
    /// The extent of the shadow outside of the rectangle: twice its standard deviation.
    Q_PROPERTY(int blur MEMBER blur_ NOTIFY lookChanged FINAL)

public:
    explicit WindowShadow(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void lookChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;

private:
    QImage draw() const;

    QColor color_;
    int blur_ = 0;
};

} // namespace kelvo
