#include "windows/channel/ChannelSheetState.h"

#include "WhileAlive.h"

#include <vector>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

struct Texts
{
    QString description;
    QString footnote;
};

Texts texts(RemoteChannel channel)
{
    switch (channel) {
    case RemoteChannel::slack:
        return {u"Kelvo posts one message to a channel you choose when a service is usable again."_s,
                u"Recovery only is the default. Outage alerts are a separate switch. Create an incoming webhook in "
                u"your Slack workspace and paste it above — no Slack app to approve."_s};
    case RemoteChannel::telegram:
        return {u"Kelvo sends one message through a bot you own when a service is usable again."_s,
                u"Create a bot with @BotFather and get your chat id from @userinfobot. No phone number is stored."_s};
    case RemoteChannel::thisMac:
    case RemoteChannel::email:
    case RemoteChannel::whatsapp: return {};
    }
    Q_UNREACHABLE();
}

std::vector<ChannelField::Binding> bindings(RemoteChannel channel)
{
    using Store = SettingsStore;
    switch (channel) {
    case RemoteChannel::slack:
        return {
            {u"Webhook URL"_s, u"https://hooks.slack.com/services/…"_s, &Store::slackWebhookURL,
             &Store::setSlackWebhookURL, &Store::slackWebhookURLChanged},
            {u"Channel"_s, u"#dev-ops"_s, &Store::slackChannelLabel, &Store::setSlackChannelLabel,
             &Store::slackChannelLabelChanged},
        };
    case RemoteChannel::telegram:
        return {
            {u"Bot token"_s, u"From @BotFather"_s, &Store::telegramBotToken, &Store::setTelegramBotToken,
             &Store::telegramBotTokenChanged},
            {u"Chat ID"_s, u"From @userinfobot"_s, &Store::telegramChatID, &Store::setTelegramChatID,
             &Store::telegramChatIDChanged},
        };
    case RemoteChannel::thisMac:
    case RemoteChannel::email:
    case RemoteChannel::whatsapp: return {};
    }
    Q_UNREACHABLE();
}

} // namespace

ChannelSheetState::ChannelSheetState(RemoteChannel channel, SettingsStore &settings, NotifierStore &notifier)
    : channel_(channel)
    , settings_(settings)
    , notifier_(notifier)
{
    for (const auto &binding : bindings(channel)) {
        fields_.append(new ChannelField(binding, settings, this));
    }
    connect(&settings, &SettingsStore::objectDidChange, this, &ChannelSheetState::changed);
    connect(&notifier, &NotifierStore::lastTestResultChanged, this, &ChannelSheetState::changed);
}

QString ChannelSheetState::description() const
{
    return texts(channel_).description;
}

QString ChannelSheetState::footnote() const
{
    return texts(channel_).footnote;
}

QString ChannelSheetState::toldAbout() const
{
    return settings_.outageAlertsEnabled() ? u"Recovery and outages"_s : u"Recovery only"_s;
}

QString ChannelSheetState::testResult() const
{
    return notifier_.lastTestResult().value_or(u"Not sent yet"_s);
}

void ChannelSheetState::sendTest()
{
    notifier_.sendTest(channel_).then(whileAlive(this, [this] { Q_EMIT testEnded(); }));
}

} // namespace kelvo
