#include "support/FakeXSettings.h"

#include "platform/linux/Xcb.h"

#include <QDataStream>
#include <QIODevice>

namespace kelvo {

FakeXSettings::FakeXSettings(const QString &display, const Settings &settings)
    : connection_(xcb_connect(display.toLatin1().constData(), nullptr))
{
    if (xcb_connection_has_error(connection_)) {
        qFatal("cannot connect to the display");
    }
    const auto root = Xcb::root(connection_);
    window_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    set(settings);
    const auto selection = Xcb::atom(connection_, "_XSETTINGS_S0");
    xcb_set_selection_owner(connection_, window_, selection, XCB_CURRENT_TIME);
    xcb_client_message_event_t announcement{};
    announcement.response_type = XCB_CLIENT_MESSAGE;
    announcement.format = 32;
    announcement.window = root;
    announcement.type = Xcb::atom(connection_, "MANAGER");
    announcement.data.data32[1] = selection;
    announcement.data.data32[2] = window_;
    xcb_send_event(connection_, 0, root, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&announcement));
    xcb_flush(connection_);
}

FakeXSettings::~FakeXSettings()
{
    xcb_disconnect(connection_);
}

void FakeXSettings::setProperty(const QByteArray &bytes, std::uint8_t format) const
{
    const auto property = Xcb::atom(connection_, "_XSETTINGS_SETTINGS");
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, property, property, format,
                        static_cast<std::uint32_t>(bytes.size() / (format / 8)), bytes.constData());
    xcb_flush(connection_);
}

void FakeXSettings::setOtherProperty() const
{
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 1, "x");
    xcb_flush(connection_);
}

QByteArray FakeXSettings::encoded(const Settings &settings, ByteOrder order)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(order == ByteOrder::bigEndian ? QDataStream::BigEndian : QDataStream::LittleEndian);
    const auto write = [&stream](QByteArray text) {
        text.append((4 - text.size() % 4) % 4, '\0');
        stream.writeRawData(text.constData(), static_cast<int>(text.size()));
    };
    constexpr quint32 serial = 7;
    write(QByteArray(1, order == ByteOrder::bigEndian ? '\1' : '\0'));
    stream << serial << static_cast<quint32>(settings.size());
    for (const auto &[name, value] : settings) {
        const auto type = value.metaType();
        const auto isText = type == QMetaType::fromType<QString>();
        const auto isColour = type == QMetaType::fromType<QByteArray>();
        stream << static_cast<quint8>(isColour ? 2 : isText ? 1 : 0) << quint8{0} << static_cast<quint16>(name.size());
        write(name);
        stream << serial;
        if (isText) {
            const auto text = value.toString().toUtf8();
            stream << static_cast<quint32>(text.size());
            write(text);
        } else if (isColour) {
            write(value.toByteArray());
        } else {
            stream << static_cast<qint32>(value.toInt());
        }
    }
    return bytes;
}

} // namespace kelvo
