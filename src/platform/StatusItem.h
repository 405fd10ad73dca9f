#pragma once

#include <QIcon>
#include <QObject>
#include <QRect>
#include <QString>

class QMenu;

namespace kelvo {

/// The application's item in the tray or menu bar. It appears as soon as there is a place for it, whichever started
/// first, and again when that place was restarted.
class StatusItem : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The image, shown untinted at whatever size the bar asks for.
    virtual void setIcon(const QIcon &icon) = 0;
    virtual void setToolTip(const QString &text) = 0;
    /// The menu of the item's right click (on some desktops of any click). Not owned; must outlive the item.
    virtual void setMenu(QMenu *menu) = 0;
    /// Where the item is on the screen; empty where the bar does not tell.
    virtual QRect geometry() const = 0;
    /// Shows the item from now on.
    virtual void show() = 0;

Q_SIGNALS:
    /// The user clicked the item.
    void activated();
};

} // namespace kelvo
