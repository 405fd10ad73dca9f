#include "platform/linux/XSettings.h"

#include "platform/linux/Xcb.h"

#include <QString>
#include <QtEndian>

#include <utility>

namespace kelvo {

namespace {

enum Type : std::uint8_t { number = 0, text = 1, colour = 2 };

/// Reads numbers and bytes one after the other. All that follows the end of the data is empty or 0.
class Reader
{
public:
    explicit Reader(QByteArrayView data)
        : left_(data)
    {
    }

    bool isValid() const { return isValid_; }
    void setBigEndian(bool isBigEndian) { isBigEndian_ = isBigEndian; }

    QByteArrayView bytes(std::uint32_t size)
    {
        isValid_ = isValid_ && size <= static_cast<std::size_t>(left_.size());
        if (!isValid_) {
            return {};
        }
        const auto read = left_.first(size);
        left_ = left_.sliced(size);
        return read;
    }

    /// Reads bytes that are followed by as many others as they need to fill units of four.
    QByteArrayView paddedBytes(std::uint32_t size)
    {
        const auto read = bytes(size);
        bytes((4 - size % 4) % 4);
        return read;
    }

    template<typename Number>
    Number next()
    {
        const auto data = bytes(sizeof(Number));
        if (data.isEmpty()) {
            return 0;
        }
        return isBigEndian_ ? qFromBigEndian<Number>(data.data()) : qFromLittleEndian<Number>(data.data());
    }

private:
    QByteArrayView left_;
    bool isValid_ = true;
    bool isBigEndian_ = false;
};

} // namespace

XSettings::XSettings(QObject *parent)
    : QObject(parent)
{
    connection_ = Xcb::connection();
    if (!connection_) {
        return;
    }
    managerMessage_ = Xcb::atom(connection_, "MANAGER");
    selection_ = Xcb::atom(connection_, "_XSETTINGS_S0");
    property_ = Xcb::atom(connection_, "_XSETTINGS_SETTINGS");
    qGuiApp->installNativeEventFilter(this);
    read();
}

XSettings::~XSettings()
{
    if (qGuiApp) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

XSettings::Values XSettings::decode(QByteArrayView property)
{
    Values values;
    Reader reader(property);
    reader.setBigEndian(reader.next<std::uint8_t>() == XCB_IMAGE_ORDER_MSB_FIRST);
    reader.bytes(3);
    reader.next<std::uint32_t>(); // the serial number of the last change
    for (auto left = reader.next<std::uint32_t>(); left > 0; --left) {
        const auto type = reader.next<std::uint8_t>();
        reader.bytes(1);
        const auto name = reader.paddedBytes(reader.next<std::uint16_t>()).toByteArray();
        reader.next<std::uint32_t>(); // the serial number of the change of this setting
        QVariant value;
        switch (type) {
        case number: value = reader.next<std::int32_t>(); break;
        case text: value = QString::fromUtf8(reader.paddedBytes(reader.next<std::uint32_t>())); break;
        case colour: reader.bytes(8); break;
        default: return values;
        }
        if (!reader.isValid()) {
            return values;
        }
        if (value.isValid()) {
            values.insert(name, value);
        }
    }
    return values;
}

void XSettings::read()
{
    Values values;
    manager_ = Xcb::selectionOwner(connection_, selection_);
    if (manager_ != XCB_WINDOW_NONE) {
        // Before the property is read, so that no change is missed. Qt listens to the same events of this window.
        constexpr std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        Xcb::ignoreError(connection_,
                         xcb_change_window_attributes_checked(connection_, manager_, XCB_CW_EVENT_MASK, &events));
        constexpr std::uint32_t atMost = 64 * 1024; // in units of four bytes
        const auto cookie = xcb_get_property(connection_, false, manager_, property_, property_, 0, atMost);
        const Xcb::Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
        if (reply && reply->format == 8) {
            values = decode(QByteArrayView(static_cast<const char *>(xcb_get_property_value(reply.get())),
                                           xcb_get_property_value_length(reply.get())));
        }
    }
    if (values != std::exchange(values_, values)) {
        Q_EMIT changed();
    }
}

bool XSettings::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    switch (static_cast<const xcb_generic_event_t *>(message)->response_type & 0x7f) {
    case XCB_CLIENT_MESSAGE:
        // A program that provides the settings announces itself to the root window, whose events Qt receives.
        if (const auto *event = static_cast<const xcb_client_message_event_t *>(message);
            event->type == managerMessage_ && event->data.data32[1] == selection_) {
            read();
        }
        break;
    case XCB_PROPERTY_NOTIFY:
        if (const auto *event = static_cast<const xcb_property_notify_event_t *>(message);
            event->window == manager_ && event->atom == property_) {
            read();
        }
        break;
    case XCB_DESTROY_NOTIFY:
        if (static_cast<const xcb_destroy_notify_event_t *>(message)->window == manager_) {
            read();
        }
        break;
    default: break;
    }
    return false;
}

} // namespace kelvo
