#pragma once

#include "style/PaintedSymbol.h"

namespace kelvo {

/// A filled bar with round ends that fills its item. A line runs along its edge, inside of the item.
class PillShape : public kelvo::PaintedSymbol
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor lineColor MEMBER lineColor_ NOTIFY lineChanged FINAL)
    /// In points; without a line if it is 0.
    Q_PROPERTY(qreal lineWidth MEMBER lineWidth_ NOTIFY lineChanged FINAL)

public:
    explicit PillShape(QQuickItem *parent = nullptr);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void lineChanged();

private:
    QColor lineColor_;
    qreal lineWidth_ = 0;
};

} // namespace kelvo
