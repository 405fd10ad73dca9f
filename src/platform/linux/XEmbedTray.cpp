#include "platform/linux/XEmbedTray.h"

#include "platform/linux/Xcb.h"

namespace kelvo {

XEmbedTray::XEmbedTray(QObject *parent)
    : QObject(parent)
{
    connection_ = Xcb::connection();
    if (!connection_) {
        return;
    }
    manager_ = Xcb::atom(connection_, "MANAGER");
    selection_ = Xcb::atom(connection_, "_NET_SYSTEM_TRAY_S0");
    // A tray announces itself with a MANAGER client message to the root window. Qt receives the events of that window.
    qGuiApp->installNativeEventFilter(this);
}

XEmbedTray::~XEmbedTray()
{
    if (qGuiApp) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

std::uint32_t XEmbedTray::window() const
{
    return connection_ ? Xcb::selectionOwner(connection_, selection_) : std::uint32_t{XCB_WINDOW_NONE};
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

} // namespace kelvo
