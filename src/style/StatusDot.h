#pragma once

#include "style/PaintedSymbol.h"

namespace kelvo {

/// A filled circle that fills its item.
class StatusDot : public kelvo::PaintedSymbol
{
    Q_OBJECT
    QML_ELEMENT

public:
    using PaintedSymbol::PaintedSymbol;
    void paint(QPainter *painter) override;
};

} // namespace kelvo
