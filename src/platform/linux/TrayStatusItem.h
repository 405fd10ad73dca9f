#pragma once

#include "platform/StatusItem.h"
#include "platform/linux/BusNameOwner.h"
#include "platform/linux/XEmbedTray.h"

#include <QIcon>
#include <QPointer>
#include <QString>
#include <QSystemTrayIcon>
#include <QTimer>

#include <memory>

namespace kelvo {

/// The item in a tray of either kind: one that asks for items over the session bus, or one that embeds X11 windows.
///
/// Qt settles for one kind, once and for the whole process, when the first QSystemTrayIcon is made; so none is made
/// before there is a tray. The bus's kind is preferred where both are offered.
class TrayStatusItem : public StatusItem
{
    Q_OBJECT

public:
    explicit TrayStatusItem(std::shared_ptr<BusConnection> sessionBus);

    void setIcon(const QIcon &icon) override;
    void setToolTip(const QString &text) override;
    void setMenu(QMenu *menu) override;
    void show() override;

private Q_SLOTS:
    void awaitHost();

private:
    void onHostKnown(bool registered);
    void settleForXEmbed();
    void place();

    std::shared_ptr<BusConnection> bus_;
    BusNameOwner watcher_;
    XEmbedTray xembed_;
    QTimer busTrayGrace_;
    QIcon icon_;
    QString toolTip_;
    QPointer<QMenu> menu_;
    bool shown_ = false;
    bool isOnBus_ = false;
    std::unique_ptr<QSystemTrayIcon> item_;
};

} // namespace kelvo
