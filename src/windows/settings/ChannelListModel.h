#pragma once

#include "settings/SettingsStore.h"

#include <QAbstractListModel>
#include <QQmlEngine>

namespace kelvo {

/// The rows of the channel list: all channels in the order of their declaration.
class ChannelListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The settings window's state has one")

public:
    enum Role {
        channelRole = Qt::UserRole, ///< "channel": the raw value
        titleRole,                  ///< "title"
        stateRole,                  ///< "stateText": the short text beside the title; may be empty
        helpRole,                   ///< "help": a text below the title; may be empty
        isArmedRole,                ///< "isArmed"
        isSelectableRole,           ///< "isSelectable": whether a click on the row has an effect
    };
    Q_ENUM(Role)

    /// Follows the store, which must outlive this object.
    explicit ChannelListModel(const SettingsStore &settings);

    /// Where the user can turn on the notifications of this program; empty if they are on.
    void setNotificationsTurnedOffIn(const QString &place);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    QString help(RemoteChannel channel) const;

    const SettingsStore &settings_;
    QString notificationsTurnedOffIn_;
};

} // namespace kelvo
