#pragma once

#include "style/PaintedSymbol.h"

namespace kelvo {

/// A symbol drawn in thin lines with round ends, in the item's colour.
class LineSymbol : public kelvo::PaintedSymbol
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Shape shape MEMBER shape_ NOTIFY lookChanged FINAL)
    /// In points; it does not scale with the symbol.
    Q_PROPERTY(qreal lineWidth MEMBER lineWidth_ NOTIFY lookChanged FINAL)

public:
    enum Shape { Bell, Check, CheckInCircle, Grip, Info };
    Q_ENUM(Shape)

    explicit LineSymbol(QQuickItem *parent = nullptr);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void lookChanged();

private:
    Shape shape_ = Check;
    qreal lineWidth_ = 1.5;
};

} // namespace kelvo
