#pragma once

#include "style/PaintedSymbol.h"

namespace kelvo {

/// The gapped ring, stroked in the item's colour around the rectangle that lies `inset` inside of the item.
class GappedRingItem : public kelvo::PaintedSymbol
{
    Q_OBJECT
    QML_NAMED_ELEMENT(GappedRing)
    Q_PROPERTY(qreal lineWidth READ lineWidth WRITE setLineWidth NOTIFY lineWidthChanged FINAL)
    /// Room for the outer half of the line; items do not draw outside of themselves.
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
