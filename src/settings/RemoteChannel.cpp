#include "settings/RemoteChannel.h"

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

struct Texts
{
    QString rawValue;
    QString displayTitle;
};

Texts texts(RemoteChannel channel)
{
    switch (channel) {
    case RemoteChannel::thisMac: return {u"thisMac"_s, u"This Mac"_s};
    case RemoteChannel::slack: return {u"slack"_s, u"Slack"_s};
    case RemoteChannel::telegram: return {u"telegram"_s, u"Telegram"_s};
    case RemoteChannel::email: return {u"email"_s, u"Email"_s};
    case RemoteChannel::whatsapp: return {u"whatsapp"_s, u"WhatsApp"_s};
    }
    Q_UNREACHABLE();
}

} // namespace

QString rawValue(RemoteChannel channel)
{
    return texts(channel).rawValue;
}

std::optional<RemoteChannel> remoteChannelFromRawValue(QStringView raw)
{
    for (const auto channel : allRemoteChannels) {
        if (rawValue(channel) == raw) {
            return channel;
        }
    }
    return std::nullopt;
}

QString displayTitle(RemoteChannel channel)
{
    return texts(channel).displayTitle;
}

} // namespace kelvo
