#include "ScreenColumn.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace kelvo {

int ScreenColumn::count(const QList<QRgb> &colours) const
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11) {
        qFatal("Pixels can only be timed on X11");
    }
    auto *connection = x11->connection();
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, static_cast<std::int16_t>(x_),
                                      static_cast<std::int16_t>(top_), 1, static_cast<std::uint16_t>(height_), ~0U);
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> image(
        xcb_get_image_reply(connection, cookie, nullptr), &std::free);
    if (!image || image->depth != 24) {
        qFatal("The screen has no pixels of 24 bits");
    }
    int found = 0;
    for (int y = 0; y < height_; ++y) {
        QRgb pixel = 0;
        std::memcpy(&pixel, xcb_get_image_data(image.get()) + static_cast<std::size_t>(y) * sizeof pixel, sizeof pixel);
        found += colours.contains(pixel | 0xff000000) ? 1 : 0;
    }
    return found;
}

} // namespace kelvo
