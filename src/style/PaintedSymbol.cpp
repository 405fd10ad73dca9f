#include "style/PaintedSymbol.h"

namespace kelvo {

PaintedSymbol::PaintedSymbol(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void PaintedSymbol::setColor(const QColor &color)
{
    if (color == color_) {
        return;
    }
    color_ = color;
    Q_EMIT colorChanged();
    update();
}

} // namespace kelvo
