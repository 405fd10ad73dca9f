#include "platform/linux/XEmbedTray.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace kelvo {

namespace {

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};

template<typename T>
using Reply = std::unique_ptr<T, Free>;

} // namespace

XEmbedTray::XEmbedTray(QObject *parent)
    : QObject(parent)
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    connection_ = x11 ? x11->connection() : nullptr;
    if (!connection_) {
        return;
    }
    manager_ = atom("MANAGER");
    selection_ = atom("_NET_SYSTEM_TRAY_S0");
    // A tray announces itself with a MANAGER client message to the root window. Qt receives the events of that window.
    qGuiApp->installNativeEventFilter(this);
}

XEmbedTray::~XEmbedTray()
{
    if (qGuiApp) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

bool XEmbedTray::isPresent() const
{
    if (!connection_) {
        return false;
    }
    const Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection_, xcb_get_selection_owner(connection_, selection_), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

bool XEmbedTray::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE) {
        const auto *announcement = static_cast<const xcb_client_message_event_t *>(message);
        if (announcement->type == manager_ && announcement->data.data32[1] == selection_) {
            Q_EMIT appeared();
        }
    }
    return false;
}

std::uint32_t XEmbedTray::atom(const QByteArray &name) const
{
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    return reply ? reply->atom : 0;
}

} // namespace kelvo
