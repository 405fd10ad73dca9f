#include "windows/settings/ChannelListModel.h"

namespace kelvo {

using namespace Qt::StringLiterals;

ChannelListModel::ChannelListModel(const SettingsStore &settings)
    : settings_(settings)
{
    connect(&settings, &SettingsStore::objectDidChange, this,
            [this] { Q_EMIT dataChanged(index(0), index(rowCount() - 1), {stateRole, isArmedRole}); });
}

void ChannelListModel::setNotificationsTurnedOffIn(const QString &place)
{
    if (place != notificationsTurnedOffIn_) {
        notificationsTurnedOffIn_ = place;
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {helpRole});
    }
}

QString ChannelListModel::help(RemoteChannel channel) const
{
    if (channel != RemoteChannel::thisMac || notificationsTurnedOffIn_.isEmpty()) {
        return {};
    }
    // A line does not begin with the arrow.
    auto place = notificationsTurnedOffIn_;
    return u"Notifications are off. Allow them in %1."_s.arg(place.replace(u" ›"_s, u"\u00a0›"_s));
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
    case helpRole: return help(channel);
    case isArmedRole: return channel == settings_.armedChannel();
    case isSelectableRole: return channel != RemoteChannel::email && channel != RemoteChannel::whatsapp;
    default: return {};
    }
}

QHash<int, QByteArray> ChannelListModel::roleNames() const
{
    return {
        {channelRole, "channel"}, {titleRole, "title"},     {stateRole, "stateText"},
        {helpRole, "help"},       {isArmedRole, "isArmed"}, {isSelectableRole, "isSelectable"},
    };
}

} // namespace kelvo
