#include "windows/settings/SettingsState.h"

#include "WhileAlive.h"

#include <algorithm>

namespace kelvo {

SettingsState::SettingsState(SettingsStore &settings, NotifierStore &notifier, QObject *parent)
    : QObject(parent)
    , settings_(settings)
    , notifier_(notifier)
    , channels_(settings)
{
    connect(&settings, &SettingsStore::objectDidChange, this, &SettingsState::refresh);
    connect(&notifier, &NotifierStore::authorizationStatusChanged, this, &SettingsState::refreshNotifications);
    refresh();
    refreshNotifications();
}

SettingsState::~SettingsState() = default;

QStringList SettingsState::checkIntervals() const
{
    QStringList titles;
    for (const auto interval : allCheckIntervals) {
        titles.append(displayTitle(interval));
    }
    return titles;
}

void SettingsState::setCheckInterval(int position)
{
    settings_.setCheckInterval(allCheckIntervals.at(static_cast<std::size_t>(position)));
}

void SettingsState::toggle(const QString &service)
{
    const auto id = fromRawValue<ServiceID>(service);
    if (!id) {
        return;
    }
    auto enabled = settings_.enabledServices();
    if (enabled.contains(*id)) {
        if (enabled.size() < 2) {
            return;
        }
        enabled.erase(*id);
    } else {
        enabled.insert(*id);
    }
    settings_.setEnabledServices(enabled);
}

void SettingsState::move(const QString &service, int to)
{
    const auto id = fromRawValue<ServiceID>(service);
    if (!id) {
        return;
    }
    auto order = settings_.serviceOrder();
    const auto found = std::find(order.begin(), order.end(), *id);
    if (found == order.end() || found - order.begin() == to) {
        return;
    }
    order.erase(found);
    order.insert(order.begin() + std::clamp(to, 0, static_cast<int>(order.size())), *id);
    settings_.setServiceOrder(order);
}

void SettingsState::tapChannel(const QString &channel)
{
    const auto tapped = fromRawValue<RemoteChannel>(channel);
    if (!tapped) {
        return;
    }
    switch (*tapped) {
    case RemoteChannel::email:
    case RemoteChannel::whatsapp: return;
    case RemoteChannel::thisMac: settings_.setArmedChannel(RemoteChannel::thisMac); return;
    case RemoteChannel::slack:
    case RemoteChannel::telegram: present(std::make_unique<ChannelSheetState>(*tapped, settings_, notifier_)); return;
    }
    Q_UNREACHABLE();
}

void SettingsState::reportFailedSheet()
{
    dismissSheet();
    Q_EMIT sheetFailed();
}

void SettingsState::refreshNotifications()
{
    notifier_.notificationsTurnedOffIn().then(
        whileAlive(this, [this](const QString &place) { channels_.setNotificationsTurnedOffIn(place); }));
}

void SettingsState::refresh()
{
    const auto &enabled = settings_.enabledServices();
    bool primaryIsKnown = false;
    std::vector<ServiceListModel::Row> rows;
    for (const auto id : settings_.serviceOrder()) {
        const bool isOn = enabled.contains(id);
        rows.push_back(
            {.id = id, .isPrimary = isOn && !primaryIsKnown, .isOn = isOn, .canToggle = !isOn || enabled.size() > 1});
        primaryIsKnown = primaryIsKnown || isOn;
    }
    services_.update(rows);
    Q_EMIT changed();
}

/// Replaces the channel sheet. The previous one is destroyed only after the views have released it.
void SettingsState::present(std::unique_ptr<ChannelSheetState> sheet)
{
    channelSheet_.swap(sheet);
    Q_EMIT channelSheetChanged();
    if (sheet) {
        sheet.release()->deleteLater();
    }
}

} // namespace kelvo
