#pragma once

#include <QRasterWindow>

namespace kelvo {

/// Another application: a window in one glaring colour over all of the screen that panels leave.
class Backdrop : public QRasterWindow
{
public:
    static constexpr QColor color{200, 0, 200};

    Backdrop();

    /// Shows it and gives it the keyboard.
    void open();

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace kelvo
