#include "platform/linux/StatusNotifierMenu.h"

#include <QDBusMetaType>
#include <QEvent>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace kelvo {

QDBusArgument &operator<<(QDBusArgument &argument, const MenuEntry &entry)
{
    argument.beginStructure();
    argument << entry.id << entry.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, MenuEntry &entry)
{
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const MenuLayout &layout)
{
    argument.beginStructure();
    argument << layout.id << layout.properties << layout.children;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, MenuLayout &layout)
{
    argument.beginStructure();
    argument >> layout.id >> layout.properties >> layout.children;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const MenuEvent &event)
{
    argument.beginStructure();
    argument << event.id << event.kind << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, MenuEvent &event)
{
    argument.beginStructure();
    argument >> event.id >> event.kind >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

StatusNotifierMenu::StatusNotifierMenu()
{
    qDBusRegisterMetaType<MenuEntry>();
    qDBusRegisterMetaType<QList<MenuEntry>>();
    qDBusRegisterMetaType<MenuLayout>();
    qDBusRegisterMetaType<MenuEvent>();
    qDBusRegisterMetaType<QList<MenuEvent>>();
}

void StatusNotifierMenu::setMenu(QMenu *menu)
{
    if (menu_) {
        menu_->removeEventFilter(this);
    }
    menu_ = menu;
    if (menu_) {
        menu_->installEventFilter(this);
    }
    Q_EMIT LayoutUpdated(++revision_, 0);
}

QString StatusNotifierMenu::textDirection() const
{
    return QGuiApplication::layoutDirection() == Qt::RightToLeft ? u"rtl"_s : u"ltr"_s;
}

QString StatusNotifierMenu::status() const
{
    return u"normal"_s;
}

uint StatusNotifierMenu::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                   MenuLayout &layout)
{
    layout = {parentId, properties(parentId, propertyNames), {}};
    if (parentId == 0 && recursionDepth != 0 && menu_) {
        for (int id = 1; id <= menu_->actions().size(); ++id) {
            layout.children.append(QVariant::fromValue(MenuLayout{id, properties(id, propertyNames), {}}));
        }
    }
    return revision_;
}

QList<MenuEntry> StatusNotifierMenu::GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames)
{
    QList<MenuEntry> entries;
    for (const int id : ids) {
        if (isKnown(id)) {
            entries.append({id, properties(id, propertyNames)});
        }
    }
    return entries;
}

QDBusVariant StatusNotifierMenu::GetProperty(int id, const QString &name)
{
    // A D-Bus variant cannot be empty, so an unknown property has an empty text.
    return QDBusVariant(properties(id, {name}).value(name, QString()));
}

void StatusNotifierMenu::Event(int id, const QString &kind, const QDBusVariant &, uint)
{
    auto *chosen = action(id);
    if (chosen && kind == "clicked"_L1) {
        // Trigger the action after the reply, because it may take a long time or end the program.
        QMetaObject::invokeMethod(chosen, &QAction::trigger, Qt::QueuedConnection);
    }
}

QList<int> StatusNotifierMenu::EventGroup(const QList<MenuEvent> &events)
{
    QList<int> unknown;
    for (const auto &event : events) {
        if (!isKnown(event.id)) {
            unknown.append(event.id);
        }
        Event(event.id, event.kind, event.data, event.timestamp);
    }
    return unknown;
}

bool StatusNotifierMenu::AboutToShow(int)
{
    return false; // the layout has not changed
}

QList<int> StatusNotifierMenu::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    idErrors = ids;
    idErrors.removeIf([this](int id) { return isKnown(id); });
    return {};
}

bool StatusNotifierMenu::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ActionAdded:
    case QEvent::ActionChanged:
    case QEvent::ActionRemoved: Q_EMIT LayoutUpdated(++revision_, 0); break;
    default: break;
    }
    return QObject::eventFilter(watched, event);
}

/// Returns null when there is no entry with this id.
QAction *StatusNotifierMenu::action(int id) const
{
    return menu_ ? menu_->actions().value(qsizetype{id} - 1) : nullptr;
}

/// Whether the id is that of an entry or of the menu itself.
bool StatusNotifierMenu::isKnown(int id) const
{
    return id == 0 || action(id);
}

/// Returns the properties with these names, or all when `names` is empty. Properties with their default are omitted.
QVariantMap StatusNotifierMenu::properties(int id, const QStringList &names) const
{
    QVariantMap all;
    const auto *entry = action(id);
    if (id == 0) {
        all.insert(u"children-display"_s, u"submenu"_s);
    } else if (entry && entry->isSeparator()) {
        all.insert(u"type"_s, u"separator"_s);
    } else if (entry) {
        // An underscore marks the mnemonic of the entry; a double underscore stands for one underscore.
        all.insert(u"label"_s, entry->text().replace(u'_', u"__"_s));
        all.insert(u"enabled"_s, entry->isEnabled());
        all.insert(u"visible"_s, entry->isVisible());
    }
    if (names.isEmpty()) {
        return all;
    }
    QVariantMap wanted;
    for (const auto &name : names) {
        if (const auto found = all.constFind(name); found != all.cend()) {
            wanted.insert(name, *found);
        }
    }
    return wanted;
}

} // namespace kelvo
