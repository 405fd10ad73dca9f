#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>

/// Short forms for requests to the X server. Requests whose connection is null must not be sent.
namespace kelvo::Xcb {

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};

template<typename T>
using Reply = std::unique_ptr<T, Free>;

/// The connection of the application; null when it does not run on X11.
inline xcb_connection_t *connection()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

/// The first screen, which Qt uses.
inline const xcb_screen_t *screen(xcb_connection_t *connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

inline xcb_window_t root(xcb_connection_t *connection)
{
    return screen(connection)->root;
}

/// For requests about windows of other programs, which may be gone. Qt prints a warning for errors that nobody receives.
inline void ignoreError(xcb_connection_t *connection, xcb_void_cookie_t request)
{
    xcb_discard_reply(connection, request.sequence);
}

inline xcb_atom_t atom(xcb_connection_t *connection, QByteArrayView name)
{
    const auto cookie = xcb_intern_atom(connection, false, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// The window that owns a selection; XCB_WINDOW_NONE when there is no owner.
inline xcb_window_t selectionOwner(xcb_connection_t *connection, xcb_atom_t selection)
{
    const auto cookie = xcb_get_selection_owner(connection, selection);
    const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(connection, cookie, nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

/// Reads a property of a window that consists of 32-bit values. Null when it is missing or shorter than one value.
inline std::optional<std::uint32_t> number(xcb_connection_t *connection, xcb_window_t window, QByteArrayView property)
{
    const auto cookie = xcb_get_property(connection, false, window, atom(connection, property),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32 || reply->value_len == 0) {
        return std::nullopt;
    }
    return *static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
}

/// Reads a property of a window that is a text. Empty when it is missing.
inline QByteArray text(xcb_connection_t *connection, xcb_window_t window, QByteArrayView property)
{
    constexpr std::uint32_t atMost = 64; // in units of four bytes
    const auto cookie = xcb_get_property(connection, false, window, atom(connection, property),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, atMost);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
    return reply && reply->format == 8 ? QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                                                    xcb_get_property_value_length(reply.get()))
                                       : QByteArray();
}

} // namespace kelvo::Xcb
