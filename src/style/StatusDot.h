#pragma once

#include "style/PaintedSymbol.h"

namespace kelvo {

/// A filled circle that fills its item. If its diameter is a whole number of device pixels, so are its edges.
class StatusDot : public kelvo::PaintedSymbol
{
    Q_OBJECT
    QML_ELEMENT

public:
    using PaintedSymbol::PaintedSymbol;
    void paint(QPainter *painter) override;

protected:
    double alignedCentre(double centre, double size) const override;
};

} // namespace kelvo
