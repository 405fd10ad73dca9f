#pragma once

#include <QColor>
#include <QList>

namespace kelvo {

/// One column of pixels of the screen. It is read directly from the X server, fast enough to time a window.
class ScreenColumn
{
public:
    ScreenColumn(int x, int top, int height)
        : x_(x)
        , top_(top)
        , height_(height)
    {
    }

    /// The number of pixels that currently have one of these colours.
    int count(const QList<QRgb> &colours) const;

private:
    int x_;
    int top_;
    int height_;
};

} // namespace kelvo
