#include "platform/macos/MenuBarStatusItem.h"

#include <QGuiApplication>
#include <QMenu>

namespace kelvo {

MenuBarStatusItem::MenuBarStatusItem()
{
    connect(&icon_, &QSystemTrayIcon::activated, this, &MenuBarStatusItem::handle);
}

void MenuBarStatusItem::setIcon(const QIcon &icon)
{
    icon_.setIcon(icon);
}

void MenuBarStatusItem::setToolTip(const QString &text)
{
    icon_.setToolTip(text);
}

void MenuBarStatusItem::setMenu(QMenu *menu)
{
    // The menu is not given to the icon, which would open it at left clicks as well.
    menu_ = menu;
}

void MenuBarStatusItem::show()
{
    icon_.show();
    Q_EMIT shown();
}

void MenuBarStatusItem::handle(QSystemTrayIcon::ActivationReason reason)
{
    // On macOS Qt calls the Control key Meta. A click with the Control key counts as a right click.
    const bool controlClick = QGuiApplication::queryKeyboardModifiers().testFlag(Qt::MetaModifier);
    if (reason != QSystemTrayIcon::Context && !controlClick) {
        Q_EMIT activated(std::nullopt);
    } else if (menu_) {
        menu_->popup(icon_.geometry().bottomLeft());
    }
}

} // namespace kelvo
