#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <utility>

struct xcb_connection_t;

namespace kelvo {

/// Provides settings to all programs of an X11 display, as the settings daemon of a desktop does; see
/// https://specifications.freedesktop.org/xsettings-spec/0.5/.
class FakeXSettings
{
public:
    enum class ByteOrder { littleEndian, bigEndian };
    /// Names and values: a QString, an int, or, as a colour, a QByteArray of eight bytes.
    using Settings = QList<std::pair<QByteArray, QVariant>>;

    FakeXSettings(const QString &display, const Settings &settings);
    ~FakeXSettings();
    FakeXSettings(const FakeXSettings &) = delete;
    FakeXSettings &operator=(const FakeXSettings &) = delete;

    void set(const Settings &settings) const { setProperty(encoded(settings)); }
    /// Sets the property as it is, well formed or not.
    void setProperty(const QByteArray &bytes, std::uint8_t format = 8) const;
    /// Writes a property of another name on the same window.
    void setOtherProperty() const;

    static QByteArray encoded(const Settings &settings, ByteOrder order = ByteOrder::littleEndian);

private:
    xcb_connection_t *connection_;
    std::uint32_t window_;
};

} // namespace kelvo
