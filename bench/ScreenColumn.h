#pragma once

#include <QColor>
#include <QList>

namespace kelvo {

/// One column of the screen's pixels, asked for directly at the X server: quick enough to time a window by.
class ScreenColumn
{
public:
    ScreenColumn(int x, int top, int height)
        : x_(x)
        , top_(top)
        , height_(height)
    {
    }

    /// How many pixels have one of these colours at this moment.
    int count(const QList<QRgb> &colours) const;

private:
    int x_;
    int top_;
    int height_;
};

} // namespace kelvo
