#pragma once

#include <QRasterWindow>

namespace kelvo {

/// A window of another application in one bright colour. It covers the screen except for panels.
class Backdrop : public QRasterWindow
{
public:
    static constexpr QColor color{200, 0, 200};

    Backdrop();

    /// Shows the window and gives it the keyboard focus.
    void open();

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace kelvo
