#pragma once

#include "alerts/NotifierStore.h"
#include "settings/SettingsStore.h"
#include "windows/channel/ChannelSheetState.h"
#include "windows/settings/ChannelListModel.h"
#include "windows/settings/ServiceListModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QStringList>

#include <memory>

namespace kelvo {

/// The state and the actions of the settings window. Changes are written to the store at once, and changes of the store
/// are shown at once.
class SettingsState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program, of its stores")

    Q_PROPERTY(kelvo::ServiceListModel *services READ services CONSTANT FINAL)
    Q_PROPERTY(kelvo::ChannelListModel *channels READ channels CONSTANT FINAL)
    Q_PROPERTY(QList<QString> checkIntervals READ checkIntervals CONSTANT FINAL)
    Q_PROPERTY(int checkInterval READ checkInterval WRITE setCheckInterval NOTIFY changed FINAL)
    Q_PROPERTY(bool watchOnThisMac READ watchOnThisMac WRITE setWatchOnThisMac NOTIFY changed FINAL)
    Q_PROPERTY(bool outageAlertsEnabled READ outageAlertsEnabled WRITE setOutageAlertsEnabled NOTIFY changed FINAL)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY changed FINAL)
    Q_PROPERTY(kelvo::ChannelSheetState *channelSheet READ channelSheet NOTIFY channelSheetChanged FINAL)

public:
    /// The stores must outlive this object.
    SettingsState(SettingsStore &settings, NotifierStore &notifier, QObject *parent = nullptr);
    ~SettingsState() override;

    ServiceListModel *services() { return &services_; }
    ChannelListModel *channels() { return &channels_; }
    /// The titles of all intervals.
    QStringList checkIntervals() const;
    /// The position of the chosen interval among all.
    int checkInterval() const { return static_cast<int>(settings_.checkInterval()); }
    bool watchOnThisMac() const { return settings_.watchOnThisMac(); }
    bool outageAlertsEnabled() const { return settings_.outageAlertsEnabled(); }
    bool launchAtLogin() const { return settings_.launchAtLogin(); }
    /// The state of the open channel sheet; null when none is open.
    ChannelSheetState *channelSheet() const { return channelSheet_.get(); }

    void setCheckInterval(int position);
    void setWatchOnThisMac(bool value) { settings_.setWatchOnThisMac(value); }
    void setOutageAlertsEnabled(bool value) { settings_.setOutageAlertsEnabled(value); }
    void setLaunchAtLogin(bool value) { settings_.setLaunchAtLogin(value); }

    /// Starts or stops watching a service, given by its raw value. The last watched service cannot be turned off.
    Q_INVOKABLE void toggle(const QString &service);
    /// Moves a service, given by its raw value, to a position in the order. A position beyond the end means the end.
    Q_INVOKABLE void move(const QString &service, int to);
    /// Handles a click on a channel, given by its raw value: arms this computer, or opens the sheet of Slack or Telegram.
    Q_INVOKABLE void tapChannel(const QString &channel);
    Q_INVOKABLE void dismissSheet() { present(nullptr); }
    /// The view of the channel sheet could not be loaded. Dismisses it.
    Q_INVOKABLE void reportFailedSheet();
    /// Reads again whether the system hides the notifications. Call this when the user may have changed it.
    void refreshNotifications();
    Q_INVOKABLE void showOnboarding() { Q_EMIT onboardingRequested(); }

Q_SIGNALS:
    void changed();
    void channelSheetChanged();
    void sheetFailed();
    /// The user asked to see the onboarding window again.
    void onboardingRequested();

private:
    void refresh();
    void present(std::unique_ptr<ChannelSheetState> sheet);

    SettingsStore &settings_;
    NotifierStore &notifier_;
    ServiceListModel services_;
    ChannelListModel channels_;
    std::unique_ptr<ChannelSheetState> channelSheet_;
};

} // namespace kelvo
