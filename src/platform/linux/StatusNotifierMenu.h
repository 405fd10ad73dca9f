#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariantMap>

namespace kelvo {

/// A menu entry as sent over the bus.
struct MenuEntry
{
    int id = 0;
    QVariantMap properties;
};
QDBusArgument &operator<<(QDBusArgument &argument, const MenuEntry &entry);
const QDBusArgument &operator>>(const QDBusArgument &argument, MenuEntry &entry);

/// A menu entry and its children, each of which is a MenuLayout.
struct MenuLayout
{
    int id = 0;
    QVariantMap properties;
    QVariantList children;
};
QDBusArgument &operator<<(QDBusArgument &argument, const MenuLayout &layout);
const QDBusArgument &operator>>(const QDBusArgument &argument, MenuLayout &layout);

/// An action of the user on a menu entry.
struct MenuEvent
{
    int id = 0;
    QString kind;
    QDBusVariant data;
    uint timestamp = 0;
};
QDBusArgument &operator<<(QDBusArgument &argument, const MenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, MenuEvent &event);

/// Exports a flat QMenu over the interface com.canonical.dbusmenu, for trays that show menus themselves. The id of an
/// entry is its position, starting at 1; 0 is the menu itself.
class StatusNotifierMenu : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")

    Q_PROPERTY(uint Version READ version CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString Status READ status CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT SCRIPTABLE true)

public:
    StatusNotifierMenu();

    /// Sets the menu, which is not owned. Null means no menu.
    void setMenu(QMenu *menu);

    uint version() const { return 3; }
    QString textDirection() const;
    QString status() const;
    QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                kelvo::MenuLayout &layout);
    Q_SCRIPTABLE QList<kelvo::MenuEntry> GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString &name);
    Q_SCRIPTABLE void Event(int id, const QString &kind, const QDBusVariant &data, uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const QList<kelvo::MenuEvent> &events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

Q_SIGNALS:
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    QAction *action(int id) const;
    bool isKnown(int id) const;
    QVariantMap properties(int id, const QStringList &names) const;

    QPointer<QMenu> menu_;
    uint revision_ = 1;
};

} // namespace kelvo
