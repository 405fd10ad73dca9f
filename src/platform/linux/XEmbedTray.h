#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <cstdint>

struct xcb_connection_t;

namespace kelvo {

/// Detects an XEmbed system tray, the older kind that embeds X11 windows, on the first screen.
class XEmbedTray : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// Finds nothing when the program does not run on X11. Requires a QGuiApplication.
    explicit XEmbedTray(QObject *parent = nullptr);
    ~XEmbedTray() override;

    /// The window of the tray; 0 when there is no tray now.
    std::uint32_t window() const;

Q_SIGNALS:
    /// Such a tray has started.
    void appeared();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

    xcb_connection_t *connection_ = nullptr;
    std::uint32_t manager_ = 0;
    std::uint32_t selection_ = 0;
};

} // namespace kelvo
