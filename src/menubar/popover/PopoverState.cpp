#include "menubar/popover/PopoverState.h"

#include "model/RelativeTime.h"

namespace kelvo {

using namespace Qt::StringLiterals;

PopoverState::PopoverState(StatusStore &store, SettingsStore &settings)
    : store_(store)
    , settings_(settings)
{
    connect(&store, &StatusStore::statusesChanged, this, &PopoverState::refresh);
    connect(&store, &StatusStore::heroIDChanged, this, &PopoverState::refresh);
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

void PopoverState::open()
{
    store_.setPopoverIsOpen(true);
    setIsOpen(true);
    refresh();
    // Check after the window is shown, because starting eight requests takes longer than drawing the window.
    QMetaObject::invokeMethod(this, [this] { store_.checkAll(); }, Qt::QueuedConnection);
}

// Closing the popover ends a peek and chooses the hero again. The views are not updated, because they are hidden.
void PopoverState::close()
{
    setIsOpen(false);
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

void PopoverState::setIsOpen(bool open)
{
    isOpen_ = open;
    Q_EMIT isOpenChanged();
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
}

} // namespace kelvo
