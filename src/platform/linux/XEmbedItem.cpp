#include "platform/linux/XEmbedItem.h"

#include "platform/linux/ActivationToken.h"
#include "platform/linux/Xcb.h"

#include <QApplication>
#include <QCursor>
#include <QPainter>
#include <QScreen>
#include <QStyle>
#include <QStyleHints>
#include <QToolTip>

#include <array>
#include <cstring>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// The side of a new item in points. Most trays change it.
constexpr double usualSide = 22;

/// The formats of the images for windows of these depths.
QImage::Format formatOf(std::uint8_t depth)
{
    switch (depth) {
    case 16: return QImage::Format_RGB16;
    case 24: return QImage::Format_RGB32;
    case 30: return QImage::Format_RGB30;
    case 32: return QImage::Format_ARGB32_Premultiplied;
    default: return QImage::Format_Invalid;
    }
}

/// Whether the pixels of windows with this visual have an alpha channel.
bool hasAlpha(const xcb_screen_t *screen, xcb_visualid_t visual)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(screen); depths.rem > 0; xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0; xcb_visualtype_next(&visuals)) {
            if (visuals.data->visual_id == visual) {
                return depths.data->depth == 32;
            }
        }
    }
    return false;
}

/// Converts pixels of the root window to the points of Qt. A screen has the same origin in both.
QRect toPoints(const QRect &pixels)
{
    for (const auto *screen : QGuiApplication::screens()) {
        const auto origin = screen->geometry().topLeft();
        const auto scale = screen->devicePixelRatio();
        if (QRectF(origin, QSizeF(screen->size()) * scale).contains(pixels.center())) {
            return {origin + (QPointF(pixels.topLeft() - origin) / scale).toPoint(),
                    (QSizeF(pixels.size()) / scale).toSize()};
        }
    }
    return pixels;
}

} // namespace

XEmbedItem::XEmbedItem()
    : connection_(Xcb::connection())
    , clicks_(std::chrono::milliseconds(QGuiApplication::styleHints()->mouseDoubleClickInterval()))
{
    toolTipDelay_.setSingleShot(true);
    toolTipDelay_.setInterval(QApplication::style()->styleHint(QStyle::SH_ToolTip_WakeUpDelay));
    connect(&toolTipDelay_, &QTimer::timeout, this, [this] { QToolTip::showText(QCursor::pos(), toolTip_); });
    qGuiApp->installNativeEventFilter(this);
}

XEmbedItem::~XEmbedItem()
{
    if (qGuiApp) {
        qGuiApp->removeNativeEventFilter(this);
        destroyWindow();
    }
}

void XEmbedItem::dock(std::uint32_t tray)
{
    if (window_ != XCB_WINDOW_NONE && tray == tray_) {
        return;
    }
    destroyWindow();
    tray_ = tray;
    createWindow(Xcb::number(connection_, tray, "_NET_SYSTEM_TRAY_VISUAL").value_or(XCB_NONE));

    constexpr std::uint32_t requestDock = 0;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = tray;
    event.type = Xcb::atom(connection_, "_NET_SYSTEM_TRAY_OPCODE");
    event.data.data32[0] = XCB_CURRENT_TIME;
    event.data.data32[1] = requestDock;
    event.data.data32[2] = window_;
    Xcb::ignoreError(connection_,
                     xcb_send_event_checked(connection_, false, tray, XCB_EVENT_MASK_NO_EVENT,
                                            reinterpret_cast<const char *>(&event)));
    xcb_flush(connection_);
}

/// Creates the window with the visual of the tray if that has an alpha channel, else with that of the screen. Then the
/// background of the tray is also that of the window.
void XEmbedItem::createWindow(std::uint32_t visual)
{
    const auto *screen = Xcb::screen(connection_);
    const bool isTransparent = hasAlpha(screen, visual);
    if (!isTransparent) {
        visual = screen->root_visual;
    }
    depth_ = isTransparent ? 32 : screen->root_depth;
    const auto colormap = xcb_generate_id(connection_);
    xcb_create_colormap(connection_, XCB_COLORMAP_ALLOC_NONE, colormap, screen->root, visual);
    constexpr std::uint32_t transparent = 0;
    const auto background = isTransparent ? transparent : std::uint32_t{XCB_BACK_PIXMAP_PARENT_RELATIVE};
    constexpr std::uint32_t border = 0;
    constexpr std::uint32_t events = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY
        | XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW;
    const std::array values{background, border, events, colormap};
    const auto side = static_cast<std::uint16_t>(qRound(usualSide * qGuiApp->devicePixelRatio()));
    size_ = {side, side};
    window_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, depth_, window_, screen->root, 0, 0, side, side, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      visual,
                      (isTransparent ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP) | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK
                          | XCB_CW_COLORMAP,
                      values.data());
    xcb_free_colormap(connection_, colormap);

    // XEMBED_INFO is the version of the protocol and the flag XEMBED_MAPPED: the tray may show the window.
    const auto embedInfo = Xcb::atom(connection_, "_XEMBED_INFO");
    constexpr std::array<std::uint32_t, 2> info{0, 1};
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, embedInfo, embedInfo, 32, info.size(),
                        info.data());
    // WM_SIZE_HINTS: the flag for the smallest size, and that size.
    constexpr std::uint32_t hasLeastSize = 1U << 4;
    const std::array<std::uint32_t, 18> sizeHints{hasLeastSize, 0, 0, 0, 0, side, side};
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS,
                        32, sizeHints.size(), sizeHints.data());
    // Trays order and hide items by their class.
    const auto name = QGuiApplication::applicationName().toUtf8();
    const auto className = name + '\0' + name + '\0';
    const auto setText = [this](xcb_atom_t property, xcb_atom_t type, const QByteArray &text) {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, property, type, 8,
                            static_cast<std::uint32_t>(text.size()), text.constData());
    };
    setText(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, className);
    setText(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, name);
}

void XEmbedItem::destroyWindow()
{
    toolTipDelay_.stop();
    isEmbedded_ = false;
    if (window_ != XCB_WINDOW_NONE) {
        Xcb::ignoreError(connection_, xcb_destroy_window_checked(connection_, window_));
        xcb_flush(connection_);
        window_ = XCB_WINDOW_NONE;
    }
}

void XEmbedItem::setIcon(const QIcon &icon)
{
    icon_ = icon;
    paint();
}

void XEmbedItem::setToolTip(const QString &text)
{
    toolTip_ = text;
}

QRect XEmbedItem::geometry() const
{
    if (!isEmbedded_) {
        return {};
    }
    const auto cookie = xcb_translate_coordinates(connection_, window_, Xcb::root(connection_), 0, 0);
    const Xcb::Reply<xcb_translate_coordinates_reply_t> reply(
        xcb_translate_coordinates_reply(connection_, cookie, nullptr));
    return reply ? toPoints(QRect(QPoint(reply->dst_x, reply->dst_y), size_)) : QRect();
}

bool XEmbedItem::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    if (window_ == XCB_WINDOW_NONE) {
        return false;
    }
    switch (static_cast<const xcb_generic_event_t *>(message)->response_type & 0x7f) {
    case XCB_EXPOSE:
        if (const auto *event = static_cast<const xcb_expose_event_t *>(message);
            event->window == window_ && event->count == 0) {
            paint();
        }
        break;
    case XCB_CONFIGURE_NOTIFY:
        if (const auto *event = static_cast<const xcb_configure_notify_event_t *>(message); event->window == window_) {
            size_ = {event->width, event->height};
        }
        break;
    case XCB_REPARENT_NOTIFY:
        if (const auto *event = static_cast<const xcb_reparent_notify_event_t *>(message); event->window == window_) {
            isEmbedded_ = event->parent != Xcb::root(connection_);
            if (!isEmbedded_) {
                // The X server moves the windows that a tray has embedded to the root window when the tray ends.
                destroyWindow();
            }
        }
        break;
    case XCB_DESTROY_NOTIFY:
        if (static_cast<const xcb_destroy_notify_event_t *>(message)->window == window_) {
            window_ = XCB_WINDOW_NONE;
            destroyWindow();
        }
        break;
    case XCB_BUTTON_PRESS:
        if (const auto *event = static_cast<const xcb_button_press_event_t *>(message); event->event == window_) {
            press(event->detail, event->time);
        }
        break;
    case XCB_ENTER_NOTIFY:
        if (static_cast<const xcb_enter_notify_event_t *>(message)->event == window_) {
            toolTipDelay_.start();
        }
        break;
    case XCB_LEAVE_NOTIFY:
        if (static_cast<const xcb_leave_notify_event_t *>(message)->event == window_) {
            toolTipDelay_.stop();
            QToolTip::hideText();
        }
        break;
    default: break;
    }
    return false;
}

void XEmbedItem::press(int button, std::uint32_t time)
{
    toolTipDelay_.stop();
    QToolTip::hideText();
    if (button == XCB_BUTTON_INDEX_3) {
        Q_EMIT menuRequested();
    } else if ((button == XCB_BUTTON_INDEX_1 || button == XCB_BUTTON_INDEX_2)
               && clicks_.accepts(std::chrono::steady_clock::now())) {
        // Qt does not know this window, nor the time of the click that allows the popover to take the focus.
        ActivationToken::keep(u"%1_TIME%2"_s.arg(QGuiApplication::applicationName()).arg(time));
        Q_EMIT activated();
    }
}

/// Fills the image with the background that the X server draws in the window. False when the window cannot be seen.
bool XEmbedItem::readBackground(QImage &image) const
{
    xcb_clear_area(connection_, false, window_, 0, 0, 0, 0);
    const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window_, 0, 0,
                                      static_cast<std::uint16_t>(image.width()),
                                      static_cast<std::uint16_t>(image.height()), ~0U);
    const Xcb::Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection_, cookie, nullptr));
    if (!reply || xcb_get_image_data_length(reply.get()) != image.sizeInBytes()) {
        return false;
    }
    std::memcpy(image.bits(), xcb_get_image_data(reply.get()), static_cast<std::size_t>(image.sizeInBytes()));
    return true;
}

void XEmbedItem::paint()
{
    const auto format = formatOf(depth_);
    if (!isEmbedded_ || format == QImage::Format_Invalid) {
        return;
    }
    QImage image(size_, format);
    if (image.hasAlphaChannel()) {
        image.fill(Qt::transparent);
    } else if (!readBackground(image)) {
        return; // painted when the window appears
    }
    QPainter painter(&image);
    icon_.paint(&painter, image.rect());
    painter.end();

    const auto context = xcb_generate_id(connection_);
    xcb_create_gc(connection_, context, window_, 0, nullptr);
    xcb_put_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window_, context, static_cast<std::uint16_t>(image.width()),
                  static_cast<std::uint16_t>(image.height()), 0, 0, 0, depth_,
                  static_cast<std::uint32_t>(image.sizeInBytes()), image.constBits());
    xcb_free_gc(connection_, context);
    xcb_flush(connection_);
}

} // namespace kelvo
