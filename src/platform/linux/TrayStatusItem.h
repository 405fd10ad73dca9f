#pragma once

#include "platform/StatusItem.h"
#include "platform/linux/BusNameOwner.h"
#include "platform/linux/StatusNotifierItem.h"
#include "platform/linux/XEmbedItem.h"
#include "platform/linux/XEmbedTray.h"

#include <QIcon>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <chrono>
#include <memory>

namespace kelvo {

/// The item in a tray on the session bus (StatusNotifierItem) or in an XEmbed tray, which embeds X11 windows. If both
/// exist, the tray on the bus is used. Trays may come and go in any order; the item follows them and is never in two.
class TrayStatusItem : public StatusItem
{
    Q_OBJECT

public:
    /// Waits `busTrayGrace` for a tray on the bus when an XEmbed tray is present, because a panel with both starts them one
    /// after the other.
    explicit TrayStatusItem(std::shared_ptr<BusConnection> sessionBus,
                            std::chrono::milliseconds busTrayGrace = std::chrono::seconds(3));

    void setImage(const StatusItemImage &image, bool barIsDark) override;
    void setToolTip(const QString &text) override;
    void setMenu(QMenu *menu) override;
    QRect geometry() const override;
    void show() override;

private Q_SLOTS:
    void askForHost();

private:
    void setHost(const QString &watcher);
    void choosePlace();
    void placeOnBus(const QString &watcher);
    void embed();
    void openMenu(QPoint point);

    std::shared_ptr<BusConnection> bus_;
    BusNameOwner watcher_;
    XEmbedTray xembed_;
    QTimer busTrayGrace_;
    QIcon icon_;
    QString toolTip_;
    QPointer<QMenu> menu_;
    bool shown_ = false;
    std::unique_ptr<StatusNotifierItem> busItem_;
    QString hostOf_;         ///< the unique name of the watcher with a host; empty when there is none
    QString registeredWith_; ///< the unique name of the tray with which the item is registered
    std::unique_ptr<XEmbedItem> embedded_;
};

} // namespace kelvo
