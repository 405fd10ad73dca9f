#pragma once

#include "alerts/NotifierStore.h"
#include "settings/SettingsStore.h"
#include "windows/channel/ChannelField.h"

#include <QList>
#include <QObject>
#include <QQmlEngine>
#include <QQmlListProperty>

namespace kelvo {

/// What the sheet of one channel shows and does. Nothing is kept here: all is read from the stores and written there.
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
    /// The stores must outlive this.
    ChannelSheetState(RemoteChannel channel, SettingsStore &settings, NotifierStore &notifier);

    QString title() const { return displayTitle(channel_); }
    /// Empty for a channel without settings of its own, as the footnote and the fields are.
    QString description() const;
    QString footnote() const;
    /// What there is to fill in.
    QQmlListProperty<ChannelField> fields() { return {this, &fields_}; }
    /// Of what the channel is told, in words.
    QString toldAbout() const;
    /// How the last test of any channel went, in words.
    QString testResult() const;
    bool isConfigured() const { return settings_.isConfigured(channel_); }
    bool isArmed() const { return settings_.armedChannel() == channel_; }

    Q_INVOKABLE void arm() { settings_.setArmedChannel(channel_); }
    /// Returns at once; the result shows when it is there.
    Q_INVOKABLE void sendTest() { notifier_.sendTest(channel_); }

Q_SIGNALS:
    void changed();

private:
    RemoteChannel channel_;
    SettingsStore &settings_;
    NotifierStore &notifier_;
    QList<ChannelField *> fields_;
};

} // namespace kelvo
