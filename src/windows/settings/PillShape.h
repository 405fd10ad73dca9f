#pragma once

#include "style/PaintedSymbol.h"

namespace kelvo {

/// A filled bar with round ends that fills its item. A line runs along its edge, inside of the item.
class PillShape : public kelvo::PaintedSymbol
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor lineColor READ lineColor WRITE setLineColor NOTIFY lineChanged FINAL)
    /// In points; without a line if it is 0.
    Q_PROPERTY(qreal lineWidth READ lineWidth WRITE setLineWidth NOTIFY lineChanged FINAL)

public:
    using PaintedSymbol::PaintedSymbol;
    void paint(QPainter *painter) override;

    QColor lineColor() const { return lineColor_; }
    qreal lineWidth() const { return lineWidth_; }
    void setLineColor(const QColor &color);
    void setLineWidth(qreal width);

Q_SIGNALS:
    void lineChanged();

private:
    QColor lineColor_;
    qreal lineWidth_ = 0;
};

} // namespace kelvo
