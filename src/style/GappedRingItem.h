#pragma once

#include "style/PaintedSymbol.h"

namespace kelvo {

/// Draws the gapped ring in the item's colour. Its centre line is in the item's rectangle, reduced by `inset` on each side.
class GappedRingItem : public kelvo::PaintedSymbol
{
    Q_OBJECT
    QML_NAMED_ELEMENT(GappedRing)
    Q_PROPERTY(qreal lineWidth READ lineWidth WRITE setLineWidth NOTIFY lineWidthChanged FINAL)
    /// The space for the outer half of the line, in points, because an item is clipped to its rectangle.
    Q_PROPERTY(qreal inset READ inset WRITE setInset NOTIFY insetChanged FINAL)

public:
    using PaintedSymbol::PaintedSymbol;

    qreal lineWidth() const { return lineWidth_; }
    qreal inset() const { return inset_; }
    void setLineWidth(qreal width);
    void setInset(qreal inset);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void lineWidthChanged();
    void insetChanged();

private:
    qreal lineWidth_ = 1;
    qreal inset_ = 0;
};

} // namespace kelvo
