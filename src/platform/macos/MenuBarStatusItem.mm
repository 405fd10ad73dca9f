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
    // Not given to the icon: it would open at every click, the left one as well.
    menu_ = menu;
}

void MenuBarStatusItem::show()
{
    icon_.show();
    Q_EMIT shown();
}

void MenuBarStatusItem::handle(QSystemTrayIcon::ActivationReason reason)
{
    // Qt calls the Control key Meta here; a click with it is a right click.
    const bool controlClick = QGuiApplication::queryKeyboardModifiers().testFlag(Qt::MetaModifier);
    if (reason != QSystemTrayIcon::Context && !controlClick) {
        Q_EMIT activated();
    } else if (menu_) {
        menu_->popup(icon_.geometry().bottomLeft());
    }
}

} // namespace kelvo
