#include "support/FakeXEmbedTray.h"

#include "platform/linux/Xcb.h"

#include <xcb/xcb.h>

#include <cstring>

namespace kelvo {

namespace {

constexpr std::uint32_t requestDock = 0;

/// The first visual with an alpha channel.
xcb_visualid_t transparentVisual(const xcb_screen_t *screen)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(screen); depths.rem > 0; xcb_depth_next(&depths)) {
        if (depths.data->depth == 32) {
            return xcb_depth_visuals(depths.data)->visual_id;
        }
    }
    qFatal("the display has no transparent windows");
}

QImage::Format formatOf(std::uint8_t depth)
{
    switch (depth) {
    case 16: return QImage::Format_RGB16;
    case 24: return QImage::Format_RGB32;
    case 30: return QImage::Format_RGB30;
    case 32: return QImage::Format_ARGB32_Premultiplied;
    default: qFatal("the display has windows of an unusual depth");
    }
}

/// The value of a pixel with this colour.
std::uint32_t pixelValue(const QColor &color, std::uint8_t depth)
{
    QImage image(1, 1, formatOf(depth));
    image.fill(color);
    std::uint32_t value = 0;
    std::memcpy(&value, image.constBits(), static_cast<std::size_t>(image.depth()) / 8);
    return value;
}

} // namespace

FakeXEmbedTray::FakeXEmbedTray(const QString &display, Visual visual)
    : connection_(xcb_connect(display.toLatin1().constData(), nullptr))
{
    if (xcb_connection_has_error(connection_)) {
        qFatal("cannot connect to the display");
    }
    const auto *screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    root_ = screen->root;
    window_ = xcb_generate_id(connection_);
    const std::uint32_t pixel = pixelValue(background, screen->root_depth);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, 0, 0, 200, 32, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL, &pixel);
    xcb_map_window(connection_, window_);
    if (visual == Visual::transparent) {
        const auto id = transparentVisual(screen);
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_,
                            Xcb::atom(connection_, "_NET_SYSTEM_TRAY_VISUAL"), XCB_ATOM_VISUALID, 32, 1, &id);
    }
    xcb_set_selection_owner(connection_, window_, Xcb::atom(connection_, "_NET_SYSTEM_TRAY_S0"), XCB_CURRENT_TIME);
    announce();

    readable_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_), QSocketNotifier::Read);
    connect(readable_.get(), &QSocketNotifier::activated, this, &FakeXEmbedTray::readEvents);
}

FakeXEmbedTray::~FakeXEmbedTray()
{
    readable_.reset();
    xcb_disconnect(connection_);
}

void FakeXEmbedTray::announce() const
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = root_;
    event.type = Xcb::atom(connection_, "MANAGER");
    event.data.data32[1] = Xcb::atom(connection_, "_NET_SYSTEM_TRAY_S0");
    event.data.data32[2] = window_;
    xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_STRUCTURE_NOTIFY, reinterpret_cast<const char *>(&event));
    xcb_flush(connection_);
}

void FakeXEmbedTray::dock(std::uint32_t window)
{
    const std::uint32_t events[] = {XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    const auto listening = xcb_change_window_attributes_checked(connection_, window, XCB_CW_EVENT_MASK, events);
    // The window may have been destroyed since it asked.
    if (const Xcb::Reply<xcb_generic_error_t> error{xcb_request_check(connection_, listening)}; !error) {
        docked_.insert(window);
        const Xcb::Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
        if (geometry) {
            formerSize_ = {geometry->width, geometry->height};
        }
        // The window outlives a tray that ends.
        xcb_change_save_set(connection_, XCB_SET_MODE_INSERT, window);
        xcb_reparent_window(connection_, window, window_, static_cast<std::int16_t>(place.x()),
                            static_cast<std::int16_t>(place.y()));
        const std::uint32_t size[] = {static_cast<std::uint32_t>(place.width()),
                                      static_cast<std::uint32_t>(place.height())};
        xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
        xcb_map_window(connection_, window);
        xcb_flush(connection_);
    }
}

QImage FakeXEmbedTray::picture() const
{
    if (docked_.isEmpty()) {
        return {};
    }
    const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, *docked_.begin(), 0, 0, place.width(),
                                      place.height(), ~0U);
    const Xcb::Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection_, cookie, nullptr));
    if (!reply) {
        return {};
    }
    const QImage image(xcb_get_image_data(reply.get()), place.width(), place.height(), formatOf(reply->depth));
    return image.copy().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QByteArray FakeXEmbedTray::property(const char *name) const
{
    constexpr std::uint32_t atMost = 64; // in units of four bytes
    const auto cookie = xcb_get_property(connection_, 0, *docked_.begin(), Xcb::atom(connection_, name),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, atMost);
    const Xcb::Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
    return {static_cast<const char *>(xcb_get_property_value(reply.get())), xcb_get_property_value_length(reply.get())};
}

void FakeXEmbedTray::moveTo(int x, int y) const
{
    const std::uint32_t point[] = {static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y)};
    const auto request = xcb_configure_window_checked(connection_, window_, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                                                      point);
    const Xcb::Reply<xcb_generic_error_t> error(xcb_request_check(connection_, request));
}

void FakeXEmbedTray::click(int button) const
{
    xcb_button_press_event_t event{};
    event.response_type = XCB_BUTTON_PRESS;
    event.detail = static_cast<xcb_button_t>(button);
    event.event = *docked_.begin();
    event.same_screen = 1;
    xcb_send_event(connection_, 0, event.event, XCB_EVENT_MASK_BUTTON_PRESS, reinterpret_cast<const char *>(&event));
    xcb_flush(connection_);
}

void FakeXEmbedTray::destroyItem() const
{
    xcb_destroy_window(connection_, *docked_.begin());
    xcb_flush(connection_);
}

void FakeXEmbedTray::setVisible(bool visible) const
{
    const auto request = visible ? xcb_map_window_checked(connection_, window_)
                                 : xcb_unmap_window_checked(connection_, window_);
    // Returns when the server has done it.
    const Xcb::Reply<xcb_generic_error_t> error(xcb_request_check(connection_, request));
}

void FakeXEmbedTray::readEvents()
{
    const auto opcode = Xcb::atom(connection_, "_NET_SYSTEM_TRAY_OPCODE");
    while (const Xcb::Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
        switch (event->response_type & 0x7f) {
        case XCB_CLIENT_MESSAGE: {
            const auto *request = reinterpret_cast<const xcb_client_message_event_t *>(event.get());
            if (request->type == opcode && request->window == window_ && request->data.data32[1] == requestDock) {
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
