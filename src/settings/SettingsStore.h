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

/// The user's settings, stored in the preferences.
///
/// Each setter emits `objectWillChange`, assigns the field, stores it under the field's own key, and then emits the
/// field's change signal and `objectDidChange`. It does so even when the value is the same as before. Texts that the
/// user typed are not validated.
class SettingsStore : public QObject
{
    Q_OBJECT

public:
    /// Reads the stored values. A missing or malformed value gets its default. Writes nothing.
    SettingsStore(Preferences &defaults, LoginItem &loginItem);
    /// The store of this process. Requires a living Composition.
    static SettingsStore &shared();

    /// Whether the user completed the onboarding window.
    bool hasOnboarded() const { return hasOnboarded_; }
    /// The user's order of services. After construction it names every service of the catalogue at least once. A setter
    /// may drop one: `setPrimary` publishes an order without the chosen service before it publishes the final one.
    const std::vector<ServiceID> &serviceOrder() const { return serviceOrder_; }
    const std::set<ServiceID> &enabledServices() const { return enabledServices_; }
    CheckInterval checkInterval() const { return checkInterval_; }
    /// Whether services are checked at all.
    bool watchOnThisMac() const { return watchOnThisMac_; }
    /// Whether the start of an outage raises an alert too. A recovery always does.
    bool outageAlertsEnabled() const { return outageAlertsEnabled_; }
    /// The channel that receives alerts in addition to this computer; `thisMac` means no additional channel.
    RemoteChannel armedChannel() const { return armedChannel_; }
    QString slackWebhookURL() const { return slackWebhookURL_; }
    QString slackChannelLabel() const { return slackChannelLabel_; }
    QString telegramBotToken() const { return telegramBotToken_; }
    QString telegramChatID() const { return telegramChatID_; }
    /// Whether the application starts at login, as last read from or written to the system.
    bool launchAtLogin() const { return launchAtLogin_; }

    /// The enabled services in the user's order.
    std::vector<Service> watchedServices() const;
    /// The first enabled service in the user's order; nullopt when none is enabled.
    std::optional<Service> primaryService() const;
    /// Describes where alerts go, for the user: "Notifying Slack".
    QString armedChannelLabel() const;
    /// Whether all the texts that the channel needs are set. A text of blanks counts as set. False for channels that
    /// need no setup or deliver nothing.
    bool isConfigured(RemoteChannel channel) const;
    /// The short status text shown beside a channel: "Armed", "Connected", "Not set up". May be empty.
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
    /// Registers or unregisters the application as a login item. When the system refuses, the field is set once more,
    /// to the state that the system reports.
    void setLaunchAtLogin(bool value);

    /// Moves the service to the front of the order and enables it. The move publishes the order twice: without the
    /// service, then with the service in front.
    void setPrimary(ServiceID id);

Q_SIGNALS:
    /// A field is about to be assigned.
    void objectWillChange();
    /// A field was assigned and stored.
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
    /// Every setter goes through here: emit `objectWillChange`, assign, call `persist`, notify.
    template<typename Value, typename Persist>
    void write(Value &field, const Value &value, Persist persist, Notifier notifier);
    void writeBoolean(bool &field, bool value, QLatin1StringView key, Notifier notifier);
    void writeText(QString &field, const QString &value, QLatin1StringView key, Notifier notifier);
    void applyLaunchAtLogin();
    /// Sets `launchAtLogin` to the state in the system.
    void followLoginItem();

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
