#include "TrayItem.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDateTime>
#include <QList>
#include <QPair>

namespace kelvo::TrayItem {

using namespace Qt::StringLiterals;

namespace {

struct Place
{
    QString service;
    QString path;
};

QVariantList call(const Place &place, const QString &interface, const QString &method, const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(place.service, place.path, interface, method);
    message.setArguments(arguments);
    const auto answer = QDBusConnection::sessionBus().call(message);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        qWarning("%s: %s", qUtf8Printable(method), qUtf8Printable(answer.errorMessage()));
    }
    return answer.arguments();
}

QVariant property(const Place &place, const QString &interface, const QString &name)
{
    const auto answer = call(place, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {interface, name});
    return answer.value(0).value<QDBusVariant>().variant();
}

/// Returns Kelvo's item. The tray may have items of the desktop as well.
Place item()
{
    const auto items = property({u"org.kde.StatusNotifierWatcher"_s, u"/StatusNotifierWatcher"_s},
                                u"org.kde.StatusNotifierWatcher"_s, u"RegisteredStatusNotifierItems"_s)
                           .toStringList();
    QList<Place> found;
    for (const auto &name : items) {
        // Some watchers write “name@/path”.
        const auto slash = name.indexOf(u'/');
        const Place place{name.left(slash).remove(u'@'), name.mid(slash)};
        if (property(place, u"org.kde.StatusNotifierItem"_s, u"Id"_s).toString() == "Kelvo"_L1) {
            found.append(place);
        }
    }
    if (found.size() != 1) {
        qFatal("%d of %d items in the tray are Kelvo's", static_cast<int>(found.size()),
               static_cast<int>(items.size()));
    }
    return found.constFirst();
}

QVariant itemProperty(const QString &name)
{
    return property(item(), u"org.kde.StatusNotifierItem"_s, name);
}

Place menuPlace()
{
    return {item().service, itemProperty(u"Menu"_s).value<QDBusObjectPath>().path()};
}

struct Entry
{
    int id;
    QString label;
};

/// Returns the menu entries. The layout is a tree of (id, properties, children); this menu has one level.
QList<Entry> entries()
{
    const auto answer = call(menuPlace(), u"com.canonical.dbusmenu"_s, u"GetLayout"_s, {0, -1, QStringList()});
    QList<Entry> entries;
    const auto root = answer.value(1).value<QDBusArgument>();
    int id = 0;
    QVariantMap properties;
    root.beginStructure();
    root >> id >> properties;
    root.beginArray();
    while (!root.atEnd()) {
        QDBusVariant child;
        root >> child;
        const auto entry = child.variant().value<QDBusArgument>();
        entry.beginStructure();
        entry >> id >> properties;
        const auto label = properties.value(u"label"_s).toString();
        if (!label.isEmpty()) {
            entries.append({id, label});
        }
    }
    return entries;
}

} // namespace

QString toolTip()
{
    const auto argument = itemProperty(u"ToolTip"_s).value<QDBusArgument>();
    QString icon;
    QString title;
    argument.beginStructure();
    argument >> icon;
    argument.beginArray();
    argument.endArray();
    argument >> title;
    return title;
}

QStringList menu()
{
    QStringList labels;
    for (const auto &entry : entries()) {
        labels.append(entry.label);
    }
    return labels;
}

void choose(const QString &label)
{
    for (const auto &entry : entries()) {
        if (entry.label == label) {
            call(menuPlace(), u"com.canonical.dbusmenu"_s, u"Event"_s,
                 {entry.id, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)),
                  static_cast<uint>(QDateTime::currentSecsSinceEpoch())});
            return;
        }
    }
    qFatal("No menu entry %s", qUtf8Printable(label));
}

} // namespace kelvo::TrayItem
