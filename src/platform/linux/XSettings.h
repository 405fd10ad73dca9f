#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QObject>
#include <QVariant>

#include <cstdint>

struct xcb_connection_t;

namespace kelvo {

/// The settings that a desktop shares with all programs on X11, such as the theme of the windows. They have the names and
/// the form of https://specifications.freedesktop.org/xsettings-spec/0.5/.
class XSettings : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    using Values = QHash<QByteArray, QVariant>;

    /// Finds nothing when the program does not run on X11. Requires a QGuiApplication.
    explicit XSettings(QObject *parent = nullptr);
    ~XSettings() override;

    /// A QString or an int; invalid when the desktop does not set it.
    QVariant value(const QByteArray &name) const { return values_.value(name); }

    /// Reads the texts and the numbers of the property _XSETTINGS_SETTINGS, up to the first that is not well formed.
    static Values decode(QByteArrayView property);

Q_SIGNALS:
    void changed();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    void read();

    xcb_connection_t *connection_ = nullptr;
    std::uint32_t managerMessage_ = 0;
    std::uint32_t selection_ = 0;
    std::uint32_t property_ = 0;
    std::uint32_t manager_ = 0; ///< the window that has the property; 0 when no program provides settings
    Values values_;
};

} // namespace kelvo
