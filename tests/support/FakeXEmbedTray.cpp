#include "support/FakeXEmbedTray.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>

namespace kelvo {

namespace {

constexpr std::uint32_t requestDock = 0;

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};

} // namespace

FakeXEmbedTray::FakeXEmbedTray(const QString &display)
    : connection_(xcb_connect(display.toLatin1().constData(), nullptr))
{
    if (xcb_connection_has_error(connection_)) {
        qFatal("cannot connect to the display");
    }
    const auto *screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    const auto window = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 200, 32, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
    const auto selection = atom("_NET_SYSTEM_TRAY_S0");
    xcb_set_selection_owner(connection_, window, selection, XCB_CURRENT_TIME);
    announce(screen->root, selection, window);
    xcb_flush(connection_);

    readable_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_), QSocketNotifier::Read);
    connect(readable_.get(), &QSocketNotifier::activated, this, &FakeXEmbedTray::readEvents);
}

FakeXEmbedTray::~FakeXEmbedTray()
{
    readable_.reset();
    xcb_disconnect(connection_);
}

std::uint32_t FakeXEmbedTray::atom(const char *name) const
{
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr));
    return reply->atom;
}

void FakeXEmbedTray::announce(std::uint32_t root, std::uint32_t selection, std::uint32_t window) const
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = root;
    event.type = atom("MANAGER");
    event.data.data32[1] = selection;
    event.data.data32[2] = window;
    xcb_send_event(connection_, 0, root, XCB_EVENT_MASK_STRUCTURE_NOTIFY, reinterpret_cast<const char *>(&event));
}

void FakeXEmbedTray::dock(std::uint32_t window)
{
    const std::uint32_t events[] = {XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    const auto listening = xcb_change_window_attributes_checked(connection_, window, XCB_CW_EVENT_MASK, events);
    // The window may have been destroyed since it asked.
    if (const std::unique_ptr<xcb_generic_error_t, Free> error{xcb_request_check(connection_, listening)}; !error) {
        docked_.insert(window);
    }
}

void FakeXEmbedTray::readEvents()
{
    const auto opcode = atom("_NET_SYSTEM_TRAY_OPCODE");
    while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_poll_for_event(connection_)}) {
        switch (event->response_type & 0x7f) {
        case XCB_CLIENT_MESSAGE: {
            const auto *request = reinterpret_cast<const xcb_client_message_event_t *>(event.get());
            if (request->type == opcode && request->data.data32[1] == requestDock) {
                dock(request->data.data32[2]);
            }
            break;
        }
        case XCB_DESTROY_NOTIFY:
            docked_.remove(reinterpret_cast<const xcb_destroy_notify_event_t *>(event.get())->window);
            break;
        }
    }
}

} // namespace kelvo
