#include "settings/SettingsStore.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

namespace key {
constexpr auto hasOnboarded = "hasOnboarded"_L1;
constexpr auto serviceOrder = "serviceOrder"_L1;
constexpr auto enabledServices = "enabledServices"_L1;
constexpr auto checkInterval = "checkInterval"_L1;
constexpr auto watchOnThisMac = "watchOnThisMac"_L1;
constexpr auto outageAlertsEnabled = "outageAlertsEnabled"_L1;
constexpr auto armedChannel = "armedChannel"_L1;
constexpr auto slackWebhookURL = "slackWebhookURL"_L1;
constexpr auto slackChannelLabel = "slackChannelLabel"_L1;
constexpr auto telegramBotToken = "telegramBotToken"_L1;
constexpr auto telegramChatID = "telegramChatID"_L1;
} // namespace key

template<typename Services>
QStringList rawValues(const Services &services)
{
    QStringList raw;
    for (const auto id : services) {
        raw.append(rawValue(id));
    }
    return raw;
}

/// Returns the services that `raw` names. Unknown names are dropped; duplicates are kept.
std::vector<ServiceID> knownServices(const QStringList &raw)
{
    std::vector<ServiceID> ids;
    for (const auto &text : raw) {
        if (const auto id = fromRawValue<ServiceID>(text)) {
            ids.push_back(*id);
        }
    }
    return ids;
}

/// Returns the stored order. Services that it does not name are appended in catalogue order.
std::vector<ServiceID> loadServiceOrder(const Preferences &defaults)
{
    auto order = knownServices(defaults.texts(key::serviceOrder).value_or(QStringList{}));
    for (const auto &service : Service::catalog()) {
        if (std::find(order.begin(), order.end(), service.id) == order.end()) {
            order.push_back(service.id);
        }
    }
    return order;
}

std::set<ServiceID> loadEnabledServices(const Preferences &defaults)
{
    const auto stored = defaults.texts(key::enabledServices);
    if (!stored) {
        return {ServiceID::claude};
    }
    const auto ids = knownServices(*stored);
    return {ids.begin(), ids.end()};
}

CheckInterval loadCheckInterval(const Preferences &defaults)
{
    const auto seconds = defaults.integer(key::checkInterval).value_or(0);
    return fromRawValue<CheckInterval>(seconds).value_or(CheckInterval::fiveMinutes);
}

RemoteChannel loadArmedChannel(const Preferences &defaults)
{
    return fromRawValue<RemoteChannel>(defaults.text(key::armedChannel).value_or(QString{}))
        .value_or(RemoteChannel::thisMac);
}

} // namespace

SettingsStore::SettingsStore(Preferences &defaults, LoginItem &loginItem)
    : defaults_(defaults)
    , loginItem_(loginItem)
    , hasOnboarded_(defaults.boolean(key::hasOnboarded).value_or(false))
    , serviceOrder_(loadServiceOrder(defaults))
    , enabledServices_(loadEnabledServices(defaults))
    , checkInterval_(loadCheckInterval(defaults))
    , watchOnThisMac_(defaults.boolean(key::watchOnThisMac).value_or(true))
    , outageAlertsEnabled_(defaults.boolean(key::outageAlertsEnabled).value_or(false))
    , armedChannel_(loadArmedChannel(defaults))
    , slackWebhookURL_(defaults.text(key::slackWebhookURL).value_or(QString{}))
    , slackChannelLabel_(defaults.text(key::slackChannelLabel).value_or(QString{}))
    , telegramBotToken_(defaults.text(key::telegramBotToken).value_or(QString{}))
    , telegramChatID_(defaults.text(key::telegramChatID).value_or(QString{}))
    , launchAtLogin_(loginItem.isEnabled())
{
    connect(&loginItem, &LoginItem::changed, this, &SettingsStore::followLoginItem);
}

std::vector<Service> SettingsStore::watchedServices() const
{
    std::vector<Service> watched;
    for (const auto id : serviceOrder_) {
        if (enabledServices_.contains(id)) {
            watched.push_back(Service::by(id));
        }
    }
    return watched;
}

std::optional<Service> SettingsStore::primaryService() const
{
    const auto first = std::find_if(serviceOrder_.begin(), serviceOrder_.end(),
                                    [this](ServiceID id) { return enabledServices_.contains(id); });
    if (first == serviceOrder_.end()) {
        return std::nullopt;
    }
    return Service::by(*first);
}

QString SettingsStore::armedChannelLabel() const
{
    if (armedChannel_ == RemoteChannel::thisMac) {
        return u"Notifying this Mac"_s;
    }
    return "Notifying "_L1 + displayTitle(armedChannel_);
}

bool SettingsStore::isConfigured(RemoteChannel channel) const
{
    switch (channel) {
    case RemoteChannel::slack: return !slackWebhookURL_.isEmpty();
    case RemoteChannel::telegram: return !telegramBotToken_.isEmpty() && !telegramChatID_.isEmpty();
    case RemoteChannel::thisMac:
    case RemoteChannel::email:
    case RemoteChannel::whatsapp: return false;
    }
    Q_UNREACHABLE();
}

QString SettingsStore::stateText(RemoteChannel channel) const
{
    switch (channel) {
    case RemoteChannel::thisMac: return u"Always on"_s;
    case RemoteChannel::email: return u"Coming later"_s;
    case RemoteChannel::whatsapp: return {};
    case RemoteChannel::slack:
    case RemoteChannel::telegram:
        if (channel == armedChannel_) {
            return u"Armed"_s;
        }
        return isConfigured(channel) ? u"Connected"_s : u"Not set up"_s;
    }
    Q_UNREACHABLE();
}

template<typename Value, typename Persist>
void SettingsStore::write(Value &field, const Value &value, Persist persist, Notifier notifier)
{
    Q_EMIT objectWillChange();
    field = value;
    persist();
    Q_EMIT(this->*notifier)();
    Q_EMIT objectDidChange();
}

void SettingsStore::writeBoolean(bool &field, bool value, QLatin1StringView key, Notifier notifier)
{
    write(field, value, [&] { defaults_.setBoolean(key, value); }, notifier);
}

void SettingsStore::writeText(QString &field, const QString &value, QLatin1StringView key, Notifier notifier)
{
    write(field, value, [&] { defaults_.setText(key, value); }, notifier);
}

void SettingsStore::setHasOnboarded(bool value)
{
    writeBoolean(hasOnboarded_, value, key::hasOnboarded, &SettingsStore::hasOnboardedChanged);
}

void SettingsStore::setServiceOrder(const std::vector<ServiceID> &value)
{
    write(
        serviceOrder_, value, [&] { defaults_.setTexts(key::serviceOrder, rawValues(value)); },
        &SettingsStore::serviceOrderChanged);
}

void SettingsStore::setEnabledServices(const std::set<ServiceID> &value)
{
    write(
        enabledServices_, value, [&] { defaults_.setTexts(key::enabledServices, rawValues(value)); },
        &SettingsStore::enabledServicesChanged);
}

void SettingsStore::setCheckInterval(CheckInterval value)
{
    write(
        checkInterval_, value, [&] { defaults_.setInteger(key::checkInterval, rawValue(value)); },
        &SettingsStore::checkIntervalChanged);
}

void SettingsStore::setWatchOnThisMac(bool value)
{
    writeBoolean(watchOnThisMac_, value, key::watchOnThisMac, &SettingsStore::watchOnThisMacChanged);
}

void SettingsStore::setOutageAlertsEnabled(bool value)
{
    writeBoolean(outageAlertsEnabled_, value, key::outageAlertsEnabled, &SettingsStore::outageAlertsEnabledChanged);
}

void SettingsStore::setArmedChannel(RemoteChannel value)
{
    write(
        armedChannel_, value, [&] { defaults_.setText(key::armedChannel, rawValue(value)); },
        &SettingsStore::armedChannelChanged);
}

void SettingsStore::setSlackWebhookURL(const QString &value)
{
    writeText(slackWebhookURL_, value, key::slackWebhookURL, &SettingsStore::slackWebhookURLChanged);
}

void SettingsStore::setSlackChannelLabel(const QString &value)
{
    writeText(slackChannelLabel_, value, key::slackChannelLabel, &SettingsStore::slackChannelLabelChanged);
}

void SettingsStore::setTelegramBotToken(const QString &value)
{
    writeText(telegramBotToken_, value, key::telegramBotToken, &SettingsStore::telegramBotTokenChanged);
}

void SettingsStore::setTelegramChatID(const QString &value)
{
    writeText(telegramChatID_, value, key::telegramChatID, &SettingsStore::telegramChatIDChanged);
}

void SettingsStore::setLaunchAtLogin(bool value)
{
    write(launchAtLogin_, value, [this] { applyLaunchAtLogin(); }, &SettingsStore::launchAtLoginChanged);
}

void SettingsStore::setPrimary(ServiceID id)
{
    // A move is a removal followed by an insertion, and each of them is a write of its own: observers and the stored
    // preferences see the order without `id` first, then the order that starts with `id`.
    auto order = serviceOrder_;
    std::erase(order, id);
    setServiceOrder(order);
    order.insert(order.begin(), id);
    setServiceOrder(order);
    auto enabled = enabledServices_;
    enabled.insert(id);
    setEnabledServices(enabled);
}

void SettingsStore::applyLaunchAtLogin()
{
    if (isApplyingLaunchAtLogin_) {
        return;
    }
    const bool applied = launchAtLogin_ ? loginItem_.registerItem() : loginItem_.unregisterItem();
    if (!applied) {
        followLoginItem();
    }
}

void SettingsStore::followLoginItem()
{
    const QScopedValueRollback guard(isApplyingLaunchAtLogin_, true);
    setLaunchAtLogin(loginItem_.isEnabled());
}

} // namespace kelvo
