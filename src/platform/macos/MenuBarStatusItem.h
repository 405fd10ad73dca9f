#pragma once

#include "platform/StatusItem.h"

#include <QSystemTrayIcon>

namespace kelvo {

/// The item in the menu bar.
class MenuBarStatusItem : public StatusItem
{
    Q_OBJECT

public:
    MenuBarStatusItem();

    void setIcon(const QIcon &icon) override;
    void setToolTip(const QString &text) override;
    void setMenu(QMenu *menu) override;
    QRect geometry() const override { return icon_.geometry(); }
    void show() override;

Q_SIGNALS:
    /// The item is in the menu bar now.
    void shown();

private:
    void handle(QSystemTrayIcon::ActivationReason reason);

    QSystemTrayIcon icon_;
    QMenu *menu_ = nullptr;
};

} // namespace kelvo
