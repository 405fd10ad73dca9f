#include "support/Looks.h"

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

using enum ServiceID;

const std::vector<ServiceID> five{claude, chatgpt, cursor, gemini, copilot};

void firstRound(Stores &stores)
{
    stores.round();
}

void claudeGoesAndItsPageRecovers(Stores &stores, bool answers)
{
    stores.checks.probeScript = [answers](ServiceID) { return answers; };
    stores.round({{claude, ServiceHealth::outage}});
    stores.round();
}

} // namespace

const std::vector<PopoverLook> &popoverLooks()
{
    static const std::vector<PopoverLook> looks{
        {u"all-well"_s, five, firstRound},
        {u"promoted"_s, five, [](Stores &stores) { stores.round({{chatgpt, ServiceHealth::outage}}); }},
        {u"two-affected"_s, five,
         [](Stores &stores) { stores.round({{chatgpt, ServiceHealth::outage}, {copilot, ServiceHealth::degraded}}); }},
        {u"recovering"_s, five, [](Stores &stores) { claudeGoesAndItsPageRecovers(stores, false); }},
        {u"recovered"_s, five, [](Stores &stores) { claudeGoesAndItsPageRecovers(stores, true); }},
        {u"nothing-watched"_s, {}, firstRound},
        {u"before-the-first-answer"_s, five, [](Stores &) {}},
        {u"peeked"_s, five, firstRound, u"copilot"_s},
        {u"eight-services"_s, {allServiceIDs.begin(), allServiceIDs.end()}, firstRound},
    };
    return looks;
}

const std::vector<ServiceID> settingsLookServices{claude, cursor, chatgpt, copilot, claudeCode};

void bringAboutSettingsLook(SettingsStore &settings)
{
    settings.setServiceOrder({claude, cursor, chatgpt, gemini, copilot, anthropicAPI, openaiAPI, claudeCode});
    settings.setSlackWebhookURL(u"https://hooks.slack.com/services/T0/B0/x"_s);
    settings.setArmedChannel(RemoteChannel::slack);
    settings.setLaunchAtLogin(true);
}

} // namespace kelvo
