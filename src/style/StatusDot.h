#pragma once

#include "style/PaintedSymbol.h"

namespace kelvo {

/// A filled circle as large as its item.
class StatusDot : public kelvo::PaintedSymbol
{
    Q_OBJECT
    QML_ELEMENT

public:
    using PaintedSymbol::PaintedSymbol;
    void paint(QPainter *painter) override;
};

} // namespace kelvo
