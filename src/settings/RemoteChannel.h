#pragma once

#include "model/RawValues.h"

namespace kelvo {

/// Where alerts go. `thisMac` is this computer, whatever it is; `email` and `whatsapp` deliver nothing yet.
enum class RemoteChannel { thisMac, slack, telegram, email, whatsapp };

/// A channel is stored by the name of its case.
template<>
inline constexpr auto rawValueTable<RemoteChannel> = std::to_array<RawValue<RemoteChannel, QStringView>>({
    {RemoteChannel::thisMac, u"thisMac"},
    {RemoteChannel::slack, u"slack"},
    {RemoteChannel::telegram, u"telegram"},
    {RemoteChannel::email, u"email"},
    {RemoteChannel::whatsapp, u"whatsapp"},
});

inline constexpr auto allRemoteChannels = allCases<RemoteChannel>();

/// The channel's name for the user.
QString displayTitle(RemoteChannel channel);

} // namespace kelvo
