#include "platform/Compositing.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace kelvo {

namespace {

template<typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

// The compositor of an X screen owns this selection. Qt uses the first screen of a display.
constexpr std::string_view compositorSelection = "_NET_WM_CM_S0";

} // namespace

bool isCompositing()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    auto *connection = x11 ? x11->connection() : nullptr;
    if (!connection) {
        return true; // Wayland always composites
    }
    const auto atomCookie = xcb_intern_atom(connection, false, static_cast<std::uint16_t>(compositorSelection.size()),
                                            compositorSelection.data());
    const Owned<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection, atomCookie, nullptr), &std::free);
    if (!atom) {
        return false;
    }
    const auto ownerCookie = xcb_get_selection_owner(connection, atom->atom);
    const Owned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(connection, ownerCookie, nullptr),
                                                       &std::free);
    return owner && owner->owner != XCB_NONE;
}

} // namespace kelvo
