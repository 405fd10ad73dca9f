#pragma once

#include "style/PaintedSymbol.h"

namespace kelvo {

/// The settings symbol: the closed outline of a gear with its hub, drawn in thin lines.
class GearSymbol : public kelvo::PaintedSymbol
{
    Q_OBJECT
    QML_ELEMENT

public:
    using PaintedSymbol::PaintedSymbol;
    void paint(QPainter *painter) override;
};

} // namespace kelvo
