#pragma once

#include "style/PaintedSymbol.h"

namespace kelvo {

/// The settings symbol: a gear drawn in thin lines with round ends.
class GearSymbol : public kelvo::PaintedSymbol
{
    Q_OBJECT
    QML_ELEMENT

public:
    using PaintedSymbol::PaintedSymbol;
    void paint(QPainter *painter) override;
};

} // namespace kelvo
