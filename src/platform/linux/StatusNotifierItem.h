#pragma once

#include "platform/linux/ClickFilter.h"
#include "platform/linux/StatusNotifierMenu.h"

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QIcon>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QString>

class QMenu;

namespace kelvo {

/// An image of a StatusNotifierItem: ARGB with 32 bits per pixel, most significant byte first.
struct IconPixmap
{
    int width = 0;
    int height = 0;
    QByteArray argb;
};
QDBusArgument &operator<<(QDBusArgument &argument, const IconPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &argument, IconPixmap &pixmap);

/// The tool tip of a StatusNotifierItem.
struct ItemToolTip
{
    QString iconName;
    QList<IconPixmap> icon;
    QString title;
    QString text;
};
QDBusArgument &operator<<(QDBusArgument &argument, const ItemToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &argument, ItemToolTip &toolTip);

/// An item for trays on the session bus, with its menu: the interface org.kde.StatusNotifierItem as specified by
/// freedesktop.org.
///
/// Qt's own implementation is not used, because it looks for trays on the first session bus connection of the process and
/// does not reconnect after the bus restarts.
class StatusNotifierItem : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")

    Q_PROPERTY(QString Category READ category CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString Id READ id CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString Title READ title SCRIPTABLE true)
    Q_PROPERTY(QString Status READ status CONSTANT SCRIPTABLE true)
    Q_PROPERTY(int WindowId READ windowId CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString IconThemePath READ noName CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString IconName READ noName CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QList<kelvo::IconPixmap> IconPixmap READ pixmaps SCRIPTABLE true)
    Q_PROPERTY(QString OverlayIconName READ noName CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QList<kelvo::IconPixmap> OverlayIconPixmap READ noPixmaps CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString AttentionIconName READ noName CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QList<kelvo::IconPixmap> AttentionIconPixmap READ noPixmaps CONSTANT SCRIPTABLE true)
    Q_PROPERTY(kelvo::ItemToolTip ToolTip READ toolTip SCRIPTABLE true)
    Q_PROPERTY(bool ItemIsMenu READ isMenu CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QDBusObjectPath Menu READ menuPath CONSTANT SCRIPTABLE true)

public:
    /// Registers the item and its menu on the connection, at the usual object paths, until this object is destroyed.
    explicit StatusNotifierItem(const QDBusConnection &connection);
    ~StatusNotifierItem() override;

    void setIcon(const QIcon &icon);
    void setToolTip(const QString &text);
    /// Sets the menu. It is not owned and must outlive the item. Null means no menu.
    void setMenu(QMenu *menu);

    /// Registers the item with the tray that has this unique bus name.
    void registerWith(const QString &watcher) const;

    QString category() const;
    QString id() const;
    QString title() const;
    QString status() const;
    int windowId() const { return 0; }
    QString noName() const { return {}; }
    QList<IconPixmap> pixmaps() const;
    QList<IconPixmap> noPixmaps() const { return {}; }
    ItemToolTip toolTip() const { return {{}, {}, toolTip_, {}}; }
    bool isMenu() const { return false; }
    QDBusObjectPath menuPath() const;

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(int x, int y);
    Q_SCRIPTABLE void SecondaryActivate(int x, int y);
    Q_SCRIPTABLE void ContextMenu(int x, int y);
    Q_SCRIPTABLE void Scroll(int delta, const QString &orientation);
    /// Receives the token with which the window that a click opens may take the focus, for compositors that require one.
    Q_SCRIPTABLE void ProvideXdgActivationToken(const QString &token);

Q_SIGNALS:
    /// The user clicked the item with the left or the middle button; the second click of a double click does not count.
    /// `point` is what the tray reports: a point on the screen or relative to the item.
    void activated(QPoint point);
    /// The user asked for the menu in a tray that does not show menus itself.
    void menuRequested(QPoint point);

    Q_SCRIPTABLE void NewTitle();
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewAttentionIcon();
    Q_SCRIPTABLE void NewOverlayIcon();
    Q_SCRIPTABLE void NewToolTip();
    Q_SCRIPTABLE void NewStatus(const QString &status);

private:
    void click(QPoint point);

    QDBusConnection connection_;
    StatusNotifierMenu menu_;
    ClickFilter clicks_;
    QIcon icon_;
    QString toolTip_;
};

} // namespace kelvo
