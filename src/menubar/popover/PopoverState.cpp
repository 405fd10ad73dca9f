#include "menubar/popover/PopoverState.h"

#include "model/RelativeTime.h"

namespace kelvo {

using namespace Qt::StringLiterals;

PopoverState::PopoverState(StatusStore &store, SettingsStore &settings)
    : store_(store)
    , settings_(settings)
{
    connect(&store, &StatusStore::statusesChanged, this, &PopoverState::refresh);
    // Nothing else changes the hero while the popover is open.
    connect(&store, &StatusStore::peekedIDChanged, this, &PopoverState::refresh);
    connect(&store, &StatusStore::nowChanged, this, &PopoverState::refresh);
    connect(&settings, &SettingsStore::objectDidChange, this, &PopoverState::refresh);
}

QString PopoverState::heroName() const
{
    const auto hero = store_.hero();
    return hero ? hero->name : u"No service"_s;
}

QString PopoverState::checkedText() const
{
    return RelativeTime::checked(heroStatus().lastChecked, store_.now());
}

QString PopoverState::spokenHero() const
{
    return u"%1, %2, %3"_s.arg(heroName(), heroStatusLabel(), checkedText().toLower());
}

void PopoverState::open()
{
    store_.setPopoverIsOpen(true);
    // The views show the current values before they know that the popover is open, and so do not animate the change.
    isOpen_ = true;
    labels_.reset();
    refresh();
    Q_EMIT isOpenChanged();
    // Check after the window is shown, because starting eight requests takes longer than drawing the window.
    QMetaObject::invokeMethod(this, [this] { store_.checkAll(); }, Qt::QueuedConnection);
}

// Closing the popover ends a peek and chooses the hero again. The views are not updated, because they are hidden.
void PopoverState::close()
{
    isOpen_ = false;
    Q_EMIT isOpenChanged();
    store_.setPopoverIsOpen(false);
}

void PopoverState::peek(const QString &service)
{
    if (const auto id = fromRawValue<ServiceID>(service)) {
        store_.peek(*id);
    }
}

ServiceStatus PopoverState::heroStatus() const
{
    const auto hero = store_.hero();
    return hero ? store_.status(hero->id) : ServiceStatus{};
}

/// The hero, if there is one, and the services of the rows.
std::vector<Service> PopoverState::services() const
{
    auto services = store_.groupRows();
    if (const auto hero = store_.hero()) {
        services.insert(services.begin(), *hero);
    }
    return services;
}

void PopoverState::announceChanges()
{
    const auto hero = store_.hero();
    QHash<ServiceID, QString> labels;
    QStringList changes;
    for (const auto &service : services()) {
        const bool isHero = hero && service.id == hero->id;
        const auto label = store_.status(service.id).label;
        labels.insert(service.id, label);
        if (!labels_ || !labels_->contains(service.id)) {
            continue;
        }
        // The first answers come all together; only the hero's is worth saying.
        const auto before = labels_->value(service.id);
        if (label != before && (isHero || !before.isEmpty())) {
            changes.append(service.name + u", "_s + (isHero ? heroStatusLabel() : label));
        }
    }
    labels_ = std::move(labels);
    if (!changes.isEmpty()) {
        Q_EMIT announced(changes.join(u". "_s));
    }
}

void PopoverState::refresh()
{
    if (!isOpen_) {
        return;
    }
    std::vector<WatchListModel::Row> rows;
    for (auto &service : store_.groupRows()) {
        const auto status = store_.status(service.id);
        rows.push_back({std::move(service), status});
    }
    rows_.update(rows);
    Q_EMIT changed();
    announceChanges();
}

} // namespace kelvo
