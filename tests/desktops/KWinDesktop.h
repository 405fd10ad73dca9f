#pragma once

#include "Desktop.h"
#include "WaylandConnection.h"

namespace kelvo {

/// Plasma on Wayland. KWin must not check permissions.
class KWinDesktop : public Desktop
{
public:
    KWinDesktop();

    QImage picture() override;
    void moveTo(const QPoint &point) override;
    void click(Button button) override;
    void pressEscape() override;

private:
    WaylandConnection compositor_;
    wl_proxy *hand_; ///< org_kde_kwin_fake_input
};

} // namespace kelvo
