#include "platform/Compositing.h"

#include "platform/linux/Xcb.h"

namespace kelvo {

bool isCompositing()
{
    auto *connection = Xcb::connection();
    if (!connection) {
        return true; // Wayland always composites
    }
    // The compositor of an X screen owns this selection. Qt uses the first screen of a display.
    return Xcb::selectionOwner(connection, Xcb::atom(connection, "_NET_WM_CM_S0")) != XCB_WINDOW_NONE;
}

} // namespace kelvo
