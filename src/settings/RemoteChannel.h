#pragma once

#include "model/RawValues.h"

namespace kelvo {

/// The channels for alerts. `thisMac` is this computer on every system. `email` and `whatsapp` deliver nothing yet.
enum class RemoteChannel { thisMac, slack, telegram, email, whatsapp };

/// The raw value of a channel is the name of its case.
template<>
inline constexpr auto rawValueTable<RemoteChannel> = std::to_array<RawValue<RemoteChannel, QStringView>>({
    {RemoteChannel::thisMac, u"thisMac"},
    {RemoteChannel::slack, u"slack"},
    {RemoteChannel::telegram, u"telegram"},
    {RemoteChannel::email, u"email"},
    {RemoteChannel::whatsapp, u"whatsapp"},
});

inline constexpr auto allRemoteChannels = allCases<RemoteChannel>();

/// Returns the name of the channel that the user sees.
QString displayTitle(RemoteChannel channel);

} // namespace kelvo
