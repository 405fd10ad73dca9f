#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace kelvo {

/// Where alerts go. `thisMac` is this computer, whatever it is; `email` and `whatsapp` deliver nothing yet.
enum class RemoteChannel { thisMac, slack, telegram, email, whatsapp };

inline constexpr std::array allRemoteChannels{RemoteChannel::thisMac, RemoteChannel::slack, RemoteChannel::telegram,
                                              RemoteChannel::email, RemoteChannel::whatsapp};

/// The text by which a channel is stored: the case's name.
QString rawValue(RemoteChannel channel);
/// The channel stored as `raw`, compared exactly; nothing for any other text.
std::optional<RemoteChannel> remoteChannelFromRawValue(QStringView raw);
/// The channel's name for the user.
QString displayTitle(RemoteChannel channel);

} // namespace kelvo
