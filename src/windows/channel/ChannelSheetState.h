#pragma once

#include "alerts/NotifierStore.h"
#include "settings/SettingsStore.h"
#include "windows/channel/ChannelField.h"

#include <QList>
#include <QObject>
#include <QQmlEngine>
#include <QQmlListProperty>

namespace kelvo {

/// The state and the actions of the settings sheet of one channel. It keeps no data: everything is read from and written
/// to the stores.
class ChannelSheetState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made for a channel by the settings window's state")

    Q_PROPERTY(QString title READ title CONSTANT FINAL)
    Q_PROPERTY(QString description READ description CONSTANT FINAL)
    Q_PROPERTY(QString footnote READ footnote CONSTANT FINAL)
    Q_PROPERTY(QQmlListProperty<kelvo::ChannelField> fields READ fields CONSTANT FINAL)
    Q_PROPERTY(QString toldAbout READ toldAbout NOTIFY changed FINAL)
    Q_PROPERTY(QString testResult READ testResult NOTIFY changed FINAL)
    Q_PROPERTY(bool isConfigured READ isConfigured NOTIFY changed FINAL)
    Q_PROPERTY(bool isArmed READ isArmed NOTIFY changed FINAL)

public:
    /// The stores must outlive this object.
    ChannelSheetState(RemoteChannel channel, SettingsStore &settings, NotifierStore &notifier);

    QString title() const { return displayTitle(channel_); }
    /// Empty for a channel without settings of its own. Its footnote and its list of fields are empty as well.
    QString description() const;
    QString footnote() const;
    /// The text fields of the sheet.
    QQmlListProperty<ChannelField> fields() { return {this, &fields_}; }
    /// Describes which alerts the channel receives: "Recovery only" or "Recovery and outages".
    QString toldAbout() const;
    /// The result of the last test of any channel, as a text for the user; empty before the first test.
    QString testResult() const;
    bool isConfigured() const { return settings_.isConfigured(channel_); }
    bool isArmed() const { return settings_.armedChannel() == channel_; }

    Q_INVOKABLE void arm() { settings_.setArmedChannel(channel_); }
    /// Sends the test message and returns at once. `testEnded` follows.
    Q_INVOKABLE void sendTest();

Q_SIGNALS:
    void changed();
    /// The post of a test message has ended, and `testResult` tells how.
    void testEnded();

private:
    RemoteChannel channel_;
    SettingsStore &settings_;
    NotifierStore &notifier_;
    QList<ChannelField *> fields_;
};

} // namespace kelvo
