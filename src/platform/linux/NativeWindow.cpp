#include "platform/NativeWindow.h"

#include "platform/linux/ActivationToken.h"
#include "platform/linux/Xcb.h"

#include <QMargins>
#include <QWindow>

#include <algorithm>
#include <array>
#include <cstring>

namespace kelvo::NativeWindow {

namespace {

/// The source of a request in EWMH: a normal program.
constexpr std::uint32_t fromProgram = 1;

/// Sends a request about the window to the window manager.
void ask(xcb_connection_t *connection, const QWindow &window, QByteArrayView request,
         const std::array<std::uint32_t, 5> &values)
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = static_cast<xcb_window_t>(window.winId());
    event.type = Xcb::atom(connection, request);
    std::copy(values.begin(), values.end(), event.data.data32);
    xcb_send_event(connection, false, Xcb::root(connection),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&event));
}

/// Tells the desktop that the start with this id is complete: a message in parts of 20 bytes, with a null byte at the end.
void completeStart(xcb_connection_t *connection, const QWindow &window, const QByteArray &id)
{
    const QByteArray text = "remove: ID=\"" + id + "\"";
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = static_cast<xcb_window_t>(window.winId());
    event.type = Xcb::atom(connection, "_NET_STARTUP_INFO_BEGIN");
    constexpr auto partSize = static_cast<qsizetype>(sizeof event.data.data8);
    for (qsizetype sent = 0; sent <= text.size(); sent += partSize) {
        const auto part = text.mid(sent, partSize);
        std::memset(event.data.data8, 0, partSize);
        std::memcpy(event.data.data8, part.constData(), static_cast<std::size_t>(part.size()));
        xcb_send_event(connection, false, Xcb::root(connection), XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char *>(&event));
        event.type = Xcb::atom(connection, "_NET_STARTUP_INFO");
    }
}

/// The time of the user's action, which ends the id of a start. 0 if it is missing.
std::uint32_t timeOf(const QByteArray &id)
{
    const auto at = id.lastIndexOf("_TIME");
    return at < 0 ? 0 : id.mid(at + 5).toUInt();
}

} // namespace

void makePopover(QWindow &window)
{
    auto *connection = Xcb::connection();
    if (!connection) {
        return;
    }
    // Qt adds its own states when it shows the window.
    const std::array states{Xcb::atom(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                            Xcb::atom(connection, "_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                        Xcb::atom(connection, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, states.size(), states.data());
}

void setDrawnShadow(QWindow &window, const QMargins &shadow)
{
    auto *connection = Xcb::connection();
    if (!connection) {
        return;
    }
    const auto property = Xcb::atom(connection, "_GTK_FRAME_EXTENTS");
    const auto id = static_cast<xcb_window_t>(window.winId());
    if (shadow.isNull()) {
        xcb_delete_property(connection, id, property);
        return;
    }
    const auto pixels = [&window](int points) {
        return static_cast<std::uint32_t>(qRound(points * window.devicePixelRatio()));
    };
    const std::array extents{pixels(shadow.left()), pixels(shadow.right()), pixels(shadow.top()),
                             pixels(shadow.bottom())};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, property, XCB_ATOM_CARDINAL, 32, extents.size(),
                        extents.data());
}

void bringToThisWorkspace(QWindow &window)
{
    if (auto *connection = Xcb::connection()) {
        if (const auto current = Xcb::number(connection, Xcb::root(connection), "_NET_CURRENT_DESKTOP")) {
            ask(connection, window, "_NET_WM_DESKTOP", {*current, fromProgram});
        }
    } else if (!window.isActive() && QGuiApplication::platformName().startsWith(QLatin1StringView("wayland"))) {
        // A Wayland program can neither move nor raise a window. A new one appears in front, on the current workspace.
        window.hide();
    }
}

void activate(QWindow &window)
{
    window.raise();
    if (auto *connection = Xcb::connection()) {
        const auto token = ActivationToken::take();
        if (!token.isEmpty()) {
            const auto size = static_cast<std::uint32_t>(token.size());
            xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                                Xcb::atom(connection, "_NET_STARTUP_ID"), Xcb::atom(connection, "UTF8_STRING"), 8, size,
                                token.constData());
            ask(connection, window, "_NET_ACTIVE_WINDOW", {fromProgram, timeOf(token)});
            completeStart(connection, window, token);
        }
    }
    // On Wayland, Qt takes the token from the environment.
    window.requestActivate();
}

} // namespace kelvo::NativeWindow
