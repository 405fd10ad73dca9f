#pragma once

#include "Desktop.h"
#include "WaylandConnection.h"

namespace kelvo {

/// sway, or another compositor built on wlroots.
class SwayDesktop : public Desktop
{
public:
    SwayDesktop();

    QImage picture() override;
    void moveTo(const QPoint &point) override;
    void click(Button button) override;
    void pressEscape() override;

private:
    WaylandConnection compositor_;
    wl_proxy *pointer_;  ///< zwlr_virtual_pointer_v1
    wl_proxy *keyboard_; ///< zwp_virtual_keyboard_v1
};

} // namespace kelvo
