#include "settings/RemoteChannel.h"

namespace kelvo {

using namespace Qt::StringLiterals;

QString displayTitle(RemoteChannel channel)
{
    switch (channel) {
    case RemoteChannel::thisMac: return u"This Mac"_s;
    case RemoteChannel::slack: return u"Slack"_s;
    case RemoteChannel::telegram: return u"Telegram"_s;
    case RemoteChannel::email: return u"Email"_s;
    case RemoteChannel::whatsapp: return u"WhatsApp"_s;
    }
    Q_UNREACHABLE();
}

} // namespace kelvo
