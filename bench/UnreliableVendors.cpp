#include "UnreliableVendors.h"

#include "World.h"

namespace kelvo {

using namespace Qt::StringLiterals;

/// A host that publishes the status of services.
struct UnreliableVendors::Source
{
    QString host;
    QByteArray path;
    int readers; ///< the number of services that read it
    std::optional<StatusPage> page;
    QString component; ///< a component of the page that one of them watches
};

const QList<UnreliableVendors::Source> UnreliableVendors::sources{
    {u"status.claude.com"_s, "/api/v2/summary.json"_ba, 3, StatusPage::Claude, u"claude.ai"_s},
    {u"status.openai.com"_s, "/api/v2/summary.json"_ba, 2, StatusPage::OpenAI, u"Conversations"_s},
    {u"status.cursor.com"_s, "/api/v2/summary.json"_ba, 1, StatusPage::Cursor, u"IDE"_s},
    {u"www.githubstatus.com"_s, "/api/v2/summary.json"_ba, 1, StatusPage::GitHub, u"Copilot"_s},
    {u"www.google.com"_s, "/appsstatus/dashboard/incidents.json"_ba, 1, std::nullopt, {}},
};

namespace {

const QStringList serviceHosts{u"claude.ai"_s,         u"chatgpt.com"_s,           u"cursor.com"_s,
                               u"gemini.google.com"_s, u"api.githubcopilot.com"_s, u"api.anthropic.com"_s,
                               u"api.openai.com"_s};
const auto slackHost = u"hooks.slack.com"_s;

} // namespace

UnreliableVendors::UnreliableVendors(SimulatedInternet &internet, quint32 seed)
    : internet_(internet)
    , random_(seed)
{
}

void UnreliableVendors::change()
{
    missingRequests_ = 0;
    isSomeoneSilent_ = false;
    for (const auto &source : sources) {
        if (chance(8)) {
            setTrouble(source, chance(2));
        }
        internet_.setUnreachable(source.host, false);
        internet_.forget(source.host, source.path);
        if (chance(25)) {
            internet_.setUnreachable(source.host);
            missingRequests_ += source.readers;
        } else if (chance(4)) {
            internet_.respond(source.host, source.path, fault());
        }
    }
    for (const auto &host : serviceHosts) {
        if (chance(3)) {
            internet_.respond(host, {}, fault());
        } else {
            internet_.setProbe(host, chance(2) ? 200 : 401);
        }
    }
    internet_.respond(slackHost, {}, chance(4) ? SimulatedResponse::ofStatus(500) : SimulatedResponse::html("ok"_ba));
}

void UnreliableVendors::recover()
{
    missingRequests_ = 0;
    isSomeoneSilent_ = false;
    for (const auto &source : sources) {
        setTrouble(source, false);
        internet_.setUnreachable(source.host, false);
        internet_.forget(source.host, source.path);
    }
    for (const auto &host : serviceHosts) {
        internet_.setProbe(host, 200);
    }
    internet_.respond(slackHost, {}, SimulatedResponse::html("ok"_ba));
}

void UnreliableVendors::breakDown()
{
    recover();
    for (const auto &source : sources) {
        setTrouble(source, true);
    }
}

void UnreliableVendors::fallSilent()
{
    recover();
    isSomeoneSilent_ = true;
    for (const auto &source : sources) {
        internet_.respond(source.host, source.path, SimulatedResponse::silence());
    }
}

int UnreliableVendors::servicesInTrouble()
{
    return static_cast<int>(sources.size()); // one service of each
}

int UnreliableVendors::requestsOfARound() const
{
    return kelvo::requestsOfARound - missingRequests_;
}

SimulatedResponse UnreliableVendors::fault()
{
    static const auto document = StatusPageDocument::claude().toJson();
    static const QList<SimulatedResponse> faults{
        SimulatedResponse::ofStatus(503),
        SimulatedResponse::html("<html>Bad gateway</html>"_ba, 502),
        SimulatedResponse::html("<html>Sign in to this Wi-Fi</html>"_ba),
        SimulatedResponse::redirect("https://claude.ai/elsewhere"_ba),
        SimulatedResponse::redirect("http://claude.ai/not-safe"_ba),
        SimulatedResponse::closeAtOnce(),
        SimulatedResponse::truncated(document),
        SimulatedResponse::json("{}"_ba),
        SimulatedResponse::json("[[[[[["_ba),
        SimulatedResponse::json(document.first(document.size() / 2)),
        SimulatedResponse::json(document).gzipped(),
        SimulatedResponse::json(document).gzipped().inChunks(),
        SimulatedResponse::json("not gzip"_ba).with("Content-Encoding"_ba, "gzip"_ba),
        SimulatedResponse::silence(),
        SimulatedResponse::stall(document),
    };
    const auto &fault = faults.at(random_.bounded(faults.size()));
    isSomeoneSilent_ = isSomeoneSilent_ || fault.behaviour == SimulatedResponse::Behaviour::Silence
        || fault.behaviour == SimulatedResponse::Behaviour::Stall;
    return fault;
}

void UnreliableVendors::setTrouble(const Source &source, bool isInTrouble)
{
    if (!source.page) {
        internet_.setGeminiIncident(isInTrouble ? std::optional(SimulatedIncident()) : std::nullopt);
    } else if (isInTrouble) {
        internet_.setComponent(*source.page, source.component, chance(2) ? u"major_outage"_s : u"partial_outage"_s);
    } else {
        internet_.setAllOperational(*source.page);
    }
}

} // namespace kelvo
