#include "windows/settings/ChannelListModel.h"

namespace kelvo {

ChannelListModel::ChannelListModel(const SettingsStore &settings)
    : settings_(settings)
{
    connect(&settings, &SettingsStore::objectDidChange, this,
            [this] { Q_EMIT dataChanged(index(0), index(rowCount() - 1), {stateRole, isArmedRole}); });
}

int ChannelListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(allRemoteChannels.size());
}

QVariant ChannelListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const auto channel = allRemoteChannels[static_cast<std::size_t>(index.row())];
    switch (role) {
    case channelRole: return rawValue(channel);
    case titleRole: return displayTitle(channel);
    case stateRole: return settings_.stateText(channel);
    case isArmedRole: return channel == settings_.armedChannel();
    case isSelectableRole: return channel != RemoteChannel::email && channel != RemoteChannel::whatsapp;
    default: return {};
    }
}

QHash<int, QByteArray> ChannelListModel::roleNames() const
{
    return {
        {channelRole, "channel"},           {titleRole, "title"}, {stateRole, "stateText"}, {isArmedRole, "isArmed"},
        {isSelectableRole, "isSelectable"},
    };
}

} // namespace kelvo
