#pragma once

#include "style/PaintedItem.h"

#include <QColor>
#include <QImage>

namespace kelvo {

/// The soft shadow of the item's rectangle, reduced by `blur` on each side.
class WindowShadow : public kelvo::PaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY lookChanged FINAL)
    /// The extent of the shadow outside of the rectangle, in points: twice its standard deviation.
    Q_PROPERTY(int blur MEMBER blur_ NOTIFY lookChanged FINAL)

public:
    explicit WindowShadow(QQuickItem *parent = nullptr);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void lookChanged();

private:
    /// The four corners, `corner` pixels wide each, with one pixel between them that can be stretched.
    QImage draw(int corner) const;

    QColor color_;
    int blur_ = 0;
    QImage image_; ///< as it was last drawn; null after a change
};

} // namespace kelvo
