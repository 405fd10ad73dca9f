#pragma once

#include "platform/linux/ClickFilter.h"

#include <QAbstractNativeEventFilter>
#include <QIcon>
#include <QImage>
#include <QObject>
#include <QRect>
#include <QSize>
#include <QString>
#include <QTimer>

#include <cstdint>

struct xcb_connection_t;

namespace kelvo {

/// The item in an XEmbed tray: an X11 window that the tray embeds, as specified by freedesktop.org in the System Tray
/// Protocol and in XEmbed.
///
/// QSystemTrayIcon is not used, because it decides once per process which kind of tray there is, and newer versions choose
/// the session bus even if nothing shows the items there.
class XEmbedItem : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// Requires that the program runs on X11.
    XEmbedItem();
    ~XEmbedItem() override;

    /// Asks the tray that this window belongs to to embed the item. The item leaves the tray that it was in. Does nothing
    /// when the item is already there.
    void dock(std::uint32_t tray);

    void setIcon(const QIcon &icon);
    void setToolTip(const QString &text);
    /// The rectangle of the item on the screen; empty when no tray has embedded it.
    QRect geometry() const;

Q_SIGNALS:
    /// The user clicked the item with the left or the middle button; the second click of a double click does not count.
    void activated();
    /// The user clicked the item with the right button.
    void menuRequested();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    void createWindow(std::uint32_t visual);
    void destroyWindow();
    void press(int button, std::uint32_t time);
    bool readBackground(QImage &image) const;
    void paint();

    xcb_connection_t *connection_;
    std::uint32_t tray_ = 0;
    std::uint32_t window_ = 0; ///< 0 when no tray was asked or the tray has ended
    std::uint8_t depth_ = 0;   ///< the bits per pixel of the window
    QSize size_;               ///< of the window, in pixels
    bool isEmbedded_ = false;
    QIcon icon_;
    QString toolTip_;
    QTimer toolTipDelay_;
    ClickFilter clicks_;
};

} // namespace kelvo
