#include "sources/StatusProvider.h"

#include "WhileAlive.h"
#include "sources/GoogleIncidentFeed.h"
#include "sources/StatuspageSummary.h"

namespace kelvo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

const QByteArray StatusProvider::userAgent = "Kelvo/1.0 (macOS status watcher)"_ba;
const HttpLimits StatusProvider::limits{.idleTimeout = 15s};

namespace {

StatusReading unreachable()
{
    return {ServiceHealth::unknown, u"Couldn’t reach status"_s};
}

} // namespace

StatusProvider::StatusProvider(HttpSession &session)
    : session_(session)
{
}

QFuture<StatusReading> StatusProvider::read(const Service &service)
{
    if (const auto *page = std::get_if<StatuspageSource>(&service.source)) {
        return checkStatuspage(page->base, page->components);
    }
    return checkGoogleDashboard(std::get<GoogleDashboardSource>(service.source).product);
}

QFuture<StatusReading> StatusProvider::checkStatuspage(const QString &base, const QStringList &componentNames)
{
    const QUrl url(base + "/api/v2/summary.json"_L1, QUrl::StrictMode);
    const auto decode = [componentNames](const QByteArray &document) -> std::optional<StatusReading> {
        const auto summary = StatuspageSummary::decode(document);
        return summary ? std::optional(summary->reading(componentNames)) : std::nullopt;
    };
    return readDocument(url, componentNames, decode);
}

QFuture<StatusReading> StatusProvider::checkGoogleDashboard(const QString &product)
{
    const QUrl url(u"https://www.google.com/appsstatus/dashboard/incidents.json"_s);
    const auto decode = [product](const QByteArray &document) {
        return GoogleIncidentFeed::reading(document, product);
    };
    return readDocument(url, {product}, decode);
}

// The HTTP status is ignored: a status page may answer 503 with a valid document, and an error page cannot be decoded.
QFuture<StatusReading> StatusProvider::readDocument(const QUrl &url, const QStringList &subject,
                                                    DocumentDecoder::Decode decode)
{
    const auto what = QStringList{url.toString()} + subject;
    const auto decodeBody = [this, what, decode = std::move(decode)](const HttpResponse &response) {
        return decoder_.run(what, response.body, decode);
    };
    const auto judge = [](const std::optional<StatusReading> &reading) { return reading.value_or(unreachable()); };
    return session_.get(url).then(whileAlive(&context_, decodeBody)).unwrap().then(judge);
}

QFuture<bool> StatusProvider::probe(const Service &service)
{
    return session_.getDiscardingBody(service.probeURL).then([](const HttpResponse &response) {
        return response.status && *response.status < 500;
    });
}

} // namespace kelvo
