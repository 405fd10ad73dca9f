#pragma once

#include "style/PaintedSymbol.h"

namespace kelvo {

/// A filled bar with round ends that fills its item.
class PillShape : public kelvo::PaintedSymbol
{
    Q_OBJECT
    QML_ELEMENT

public:
    using PaintedSymbol::PaintedSymbol;
    void paint(QPainter *painter) override;
};

} // namespace kelvo
