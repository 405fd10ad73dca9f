#pragma once

#include "style/PaintedItem.h"

#include <QColor>

namespace kelvo {

/// A small drawing in one colour. Its centre is on the grid of half device pixels: it is symmetric at every scale, and
/// symbols with the same centre stay concentric.
class PaintedSymbol : public kelvo::PaintedItem
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)

public:
    using PaintedItem::PaintedItem;

    QColor color() const { return color_; }
    void setColor(const QColor &color);

    void align(QPainter *painter) const override;

Q_SIGNALS:
    void colorChanged();

private:
    QColor color_ = Qt::black;
};

} // namespace kelvo
