#pragma once

#include "model/Service.h"
#include "platform/LoginItem.h"
#include "platform/Preferences.h"
#include "settings/CheckInterval.h"
#include "settings/RemoteChannel.h"

#include <QObject>

#include <optional>
#include <set>
#include <vector>

namespace kelvo {

/// Every choice of the user, kept in the preferences. A write is published (`objectWillChange`), made, written through
/// at once under the field's own key, and told (the field's notifier, `objectDidChange`). Nothing typed is validated.
class SettingsStore : public QObject
{
    Q_OBJECT

public:
    /// Reads what is stored; missing or malformed values take their defaults. Nothing is written.
    SettingsStore(Preferences &defaults, LoginItem &loginItem);
    /// The store of this process. Available once the program is composed.
    static SettingsStore &shared();

    /// The first-run window was completed.
    bool hasOnboarded() const { return hasOnboarded_; }
    /// The user's order. Every service of the catalogue is in it at least once.
    const std::vector<ServiceID> &serviceOrder() const { return serviceOrder_; }
    const std::set<ServiceID> &enabledServices() const { return enabledServices_; }
    CheckInterval checkInterval() const { return checkInterval_; }
    /// The master switch of all watching.
    bool watchOnThisMac() const { return watchOnThisMac_; }
    /// Whether the beginning of an outage is told too. A recovery always is.
    bool outageAlertsEnabled() const { return outageAlertsEnabled_; }
    /// The one channel that gets alerts besides this computer.
    RemoteChannel armedChannel() const { return armedChannel_; }
    QString slackWebhookURL() const { return slackWebhookURL_; }
    QString slackChannelLabel() const { return slackChannelLabel_; }
    QString telegramBotToken() const { return telegramBotToken_; }
    QString telegramChatID() const { return telegramChatID_; }
    /// Mirrors the system's registration of this application.
    bool launchAtLogin() const { return launchAtLogin_; }

    /// The enabled services in the user's order.
    std::vector<Service> watchedServices() const;
    /// The first enabled service in the user's order; nothing when none is enabled.
    std::optional<Service> primaryService() const;
    /// Where alerts go, in words.
    QString armedChannelLabel() const;
    /// Whether the channel has all it needs to deliver. Blanks count as set.
    bool isConfigured(RemoteChannel channel) const;
    /// The short text beside a channel; empty where there is nothing to say.
    QString stateText(RemoteChannel channel) const;

    void setHasOnboarded(bool value);
    void setServiceOrder(const std::vector<ServiceID> &value);
    void setEnabledServices(const std::set<ServiceID> &value);
    void setCheckInterval(CheckInterval value);
    void setWatchOnThisMac(bool value);
    void setOutageAlertsEnabled(bool value);
    void setArmedChannel(RemoteChannel value);
    void setSlackWebhookURL(const QString &value);
    void setSlackChannelLabel(const QString &value);
    void setTelegramBotToken(const QString &value);
    void setTelegramChatID(const QString &value);
    /// Registers or unregisters with the system; when that fails the field springs back to the system's real state.
    void setLaunchAtLogin(bool value);

    /// Makes the service the first in the order, and enables it.
    void setPrimary(ServiceID id);

Q_SIGNALS:
    /// Some field is about to change.
    void objectWillChange();
    /// Some field changed and is written.
    void objectDidChange();
    void hasOnboardedChanged();
    void serviceOrderChanged();
    void enabledServicesChanged();
    void checkIntervalChanged();
    void watchOnThisMacChanged();
    void outageAlertsEnabledChanged();
    void armedChannelChanged();
    void slackWebhookURLChanged();
    void slackChannelLabelChanged();
    void telegramBotTokenChanged();
    void telegramChatIDChanged();
    void launchAtLoginChanged();

private:
    using Notifier = void (SettingsStore::*)();
    /// The way of every write: publish, change, `persist`, notify.
    template<typename Value, typename Persist>
    void write(Value &field, const Value &value, Persist persist, Notifier notifier);
    void writeBoolean(bool &field, bool value, QLatin1StringView key, Notifier notifier);
    void writeText(QString &field, const QString &value, QLatin1StringView key, Notifier notifier);
    void applyLaunchAtLogin();

    Preferences &defaults_;
    LoginItem &loginItem_;
    bool hasOnboarded_;
    std::vector<ServiceID> serviceOrder_;
    std::set<ServiceID> enabledServices_;
    CheckInterval checkInterval_;
    bool watchOnThisMac_;
    bool outageAlertsEnabled_;
    RemoteChannel armedChannel_;
    QString slackWebhookURL_;
    QString slackChannelLabel_;
    QString telegramBotToken_;
    QString telegramChatID_;
    bool launchAtLogin_;
    bool isApplyingLaunchAtLogin_ = false;
};

} // namespace kelvo
