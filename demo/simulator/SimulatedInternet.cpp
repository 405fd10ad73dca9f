#include "simulator/SimulatedInternet.h"

#include "simulator/IncidentFeedDocument.h"
#include "simulator/SimulatedConnection.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

const auto summaryPath = "/api/v2/summary.json"_ba;
const auto feedHost = u"www.google.com"_s;
const auto feedPath = "/appsstatus/dashboard/incidents.json"_ba;

constexpr std::array pages{StatusPage::Claude, StatusPage::OpenAI, StatusPage::Cursor, StatusPage::GitHub};

/// The status codes with which the services answer a request without credentials while they work.
struct ServiceHost
{
    QLatin1StringView host;
    int status;
};
constexpr std::array serviceHosts{
    ServiceHost{"claude.ai"_L1, 200},
    ServiceHost{"chatgpt.com"_L1, 403},
    ServiceHost{"cursor.com"_L1, 200},
    ServiceHost{"gemini.google.com"_L1, 200},
    ServiceHost{"api.githubcopilot.com"_L1, 404},
    ServiceHost{"api.anthropic.com"_L1, 401},
    ServiceHost{"api.openai.com"_L1, 401},
};

const auto slackHost = u"hooks.slack.com"_s;
const auto telegramHost = u"api.telegram.org"_s;

SimulatedResponse serviceResponse(int status)
{
    const SimulatedResponse response = SimulatedResponse::ofStatus(status);
    return status == 401 ? response.with("WWW-Authenticate"_ba, "Bearer realm=\"API\""_ba) : response;
}

} // namespace

SimulatedInternet::SimulatedInternet(QObject *parent)
    : QTcpServer(parent)
    , documents_{StatusPageDocument::claude(), StatusPageDocument::openAI(), StatusPageDocument::cursor(),
                 StatusPageDocument::gitHub()}
    , feed_(incidentFeed(incident_, endedIncidents_))
{
    for (const auto &[host, status] : serviceHosts) {
        respond(host, {}, serviceResponse(status));
    }
    respond(slackHost, {}, SimulatedResponse::html("ok"_ba));
    respond(telegramHost, {}, SimulatedResponse::json(R"({"ok":true,"result":{"message_id":1}})"_ba));
    if (!listen(QHostAddress::LocalHost)) {
        qFatal("No port of 127.0.0.1 is free: %ls", qUtf16Printable(errorString()));
    }
}

SimulatedInternet::~SimulatedInternet()
{
    qDeleteAll(findChildren<SimulatedConnection *>(Qt::FindDirectChildrenOnly));
}

QUrl SimulatedInternet::proxyUrl() const
{
    return QUrl(u"http://127.0.0.1:%1"_s.arg(port()));
}

QStringList SimulatedInternet::hosts()
{
    QStringList hosts{feedHost, slackHost, telegramHost};
    std::ranges::transform(pages, std::back_inserter(hosts), &SimulatedInternet::host);
    std::ranges::transform(serviceHosts, std::back_inserter(hosts), &ServiceHost::host);
    return hosts;
}

QString SimulatedInternet::host(StatusPage page)
{
    switch (page) {
    case StatusPage::Claude: return u"status.claude.com"_s;
    case StatusPage::OpenAI: return u"status.openai.com"_s;
    case StatusPage::Cursor: return u"status.cursor.com"_s;
    case StatusPage::GitHub: return u"www.githubstatus.com"_s;
    }
    Q_UNREACHABLE();
}

void SimulatedInternet::setComponent(StatusPage page, const QString &component, const QString &status)
{
    documents_[index(page)].setComponent(component, status);
}

void SimulatedInternet::setIndicator(StatusPage page, const QString &indicator, const QString &description)
{
    documents_[index(page)].setIndicator(indicator, description);
}

void SimulatedInternet::setAllOperational(StatusPage page)
{
    documents_[index(page)].setAllOperational();
}

void SimulatedInternet::setGeminiIncident(std::optional<SimulatedIncident> incident)
{
    incident_ = std::move(incident);
    feed_ = incidentFeed(incident_, endedIncidents_);
}

void SimulatedInternet::setEndedIncidents(int count)
{
    endedIncidents_ = count;
    feed_ = incidentFeed(incident_, endedIncidents_);
}

void SimulatedInternet::setProbe(const QString &host, int status)
{
    respond(host, {}, serviceResponse(status));
}

void SimulatedInternet::respond(const QString &host, const QByteArray &path, const SimulatedResponse &response)
{
    respondInTurn(host, path, {response});
}

void SimulatedInternet::respondInTurn(const QString &host, const QByteArray &path,
                                      const QList<SimulatedResponse> &responses)
{
    responses_.insert({host, path}, responses);
}

void SimulatedInternet::forget(const QString &host, const QByteArray &path)
{
    responses_.remove({host, path});
}

void SimulatedInternet::setUnreachable(const QString &host, bool unreachable)
{
    if (unreachable) {
        unreachable_.insert(host);
    } else {
        unreachable_.remove(host);
    }
}

void SimulatedInternet::closeIdleConnections()
{
    const auto connections = findChildren<SimulatedConnection *>(Qt::FindDirectChildrenOnly);
    std::ranges::for_each(connections, &SimulatedConnection::closeIfIdle);
}

void SimulatedInternet::setCertificate(const QSslCertificate &certificate, const QSslKey &privateKey)
{
    certificate_ = certificate;
    privateKey_ = privateKey;
}

int SimulatedInternet::tunnelStatus(const QString &host) const
{
    if (proxyStatus_ != 200) {
        return proxyStatus_;
    }
    return exists(host) ? 200 : 502;
}

QList<SimulatedRequest> SimulatedInternet::requestsTo(const QString &host) const
{
    QList<SimulatedRequest> found;
    std::ranges::copy_if(requests_, std::back_inserter(found),
                         [&](const auto &request) { return request.host == host; });
    return found;
}

int SimulatedInternet::connectionsOpen() const
{
    return static_cast<int>(findChildren<SimulatedConnection *>(Qt::FindDirectChildrenOnly).size());
}

SimulatedResponse SimulatedInternet::receive(const SimulatedRequest &request)
{
    requests_.append(request);
    Q_EMIT requestReceived(request);
    if (!exists(request.host)) {
        return SimulatedResponse::closeAtOnce();
    }
    if (auto response = takeResponse({request.host, request.path})) {
        return *response;
    }
    if (auto response = vendorResponse(request)) {
        return *response;
    }
    return takeResponse({request.host, {}}).value_or(SimulatedResponse::ofStatus(404));
}

void SimulatedInternet::incomingConnection(qintptr descriptor)
{
    ++connectionsAccepted_;
    new SimulatedConnection(descriptor, *this);
}

bool SimulatedInternet::exists(const QString &host) const
{
    if (offline_ || unreachable_.contains(host)) {
        return false;
    }
    return hosts().contains(host)
        || std::ranges::any_of(responses_.keys(), [&](const Route &route) { return route.first == host; });
}

std::optional<SimulatedResponse> SimulatedInternet::takeResponse(const Route &route)
{
    const auto found = responses_.find(route);
    if (found == responses_.end() || found->isEmpty()) {
        return std::nullopt;
    }
    return found->size() > 1 ? found->takeFirst() : found->constFirst();
}

std::optional<SimulatedResponse> SimulatedInternet::vendorResponse(const SimulatedRequest &request) const
{
    if (request.host == feedHost && request.path == feedPath) {
        return SimulatedResponse::json(feed_);
    }
    const auto page = std::ranges::find(pages, request.host, &SimulatedInternet::host);
    if (page != pages.end() && request.path == summaryPath) {
        return SimulatedResponse::json(document(*page).toJson());
    }
    return std::nullopt;
}

} // namespace kelvo
