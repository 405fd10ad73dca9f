#include "ReadingText.h"
#include "VendorDocuments.h"
#include "model/Service.h"
#include "simulator/SimulatedInternet.h"
#include "sources/StatusProvider.h"
#include "support/CountingNetwork.h"
#include "support/Settles.h"

#include <QJsonArray>
#include <QSignalSpy>
#include <QTest>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const StatusReading operational{ServiceHealth::operational, u"Operational"_s};
const StatusReading partialOutage{ServiceHealth::degraded, u"Partial outage"_s};
const StatusReading majorOutage{ServiceHealth::outage, u"Major outage"_s};
const StatusReading unreachable{ServiceHealth::unknown, u"Couldn’t reach status"_s};

const QString pageHost = u"status.claude.com"_s;
const QString pageBase = u"https://status.claude.com"_s;
const QByteArray summaryPath = "/api/v2/summary.json";
const QString googleHost = u"www.google.com"_s;
const QByteArray feedPath = "/appsstatus/dashboard/incidents.json";
const QByteArray errorPage = "<!DOCTYPE html><html><body><h1>Service Unavailable</h1></body></html>";

/// Short limits for tests that exceed one of them. Normal responses arrive long before.
constexpr HttpLimits impatient{
    .idleTimeout = 100ms, .totalDeadline = 300ms, .maximumKeptSize = 100'000, .maximumDiscardedSize = 100'000};

/// A provider with its own simulated internet.
struct World
{
    explicit World(HttpLimits limits = StatusProvider::limits)
        : session(CountingNetwork::network(internet, requestsBegun), limits, StatusProvider::userAgent)
    {
    }

    /// Waits for the result of the future. Returns `otherwise` when it does not finish.
    template<typename T>
    T wait(const QFuture<T> &future, T otherwise)
    {
        return settles(future) ? future.result() : otherwise;
    }
    StatusReading page(const QStringList &names = {u"claude.ai"_s}, const QString &base = pageBase)
    {
        return wait(provider.checkStatuspage(base, names), {ServiceHealth::unknown, u"(never answered)"_s});
    }
    StatusReading gemini()
    {
        return wait(provider.checkGoogleDashboard(u"Gemini"_s), {ServiceHealth::unknown, u"(never answered)"_s});
    }
    StatusReading check(const Service &service)
    {
        return wait(provider.read(service), {ServiceHealth::unknown, u"(never answered)"_s});
    }
    /// Waits for the result of a probe. Returns nullopt when it does not finish.
    std::optional<bool> probe(ServiceID id = ServiceID::claude)
    {
        const auto answer = provider.probe(Service::by(id)).then([](bool usable) { return std::optional(usable); });
        return wait(answer, std::optional<bool>());
    }

    SimulatedInternet internet;
    int requestsBegun = 0;
    HttpSession session;
    StatusProvider provider{session};
};

QByteArray summary(const QString &componentStatus)
{
    return json(
        longSummary(u"minor"_s, u"Partial System Outage"_s, with(claudeComponents(), u"claude.ai"_s, componentStatus)));
}

/// Adds responses whose transfer fails.
void addBrokenTransfers(const QByteArray &body)
{
    QTest::addColumn<SimulatedResponse>("response");
    QTest::newRow("closed at once") << SimulatedResponse::closeAtOnce();
    QTest::newRow("closed in mid body") << SimulatedResponse::truncated(body);
    QTest::newRow("no answer") << SimulatedResponse::silence();
    QTest::newRow("stuck in mid body") << SimulatedResponse::stall(body);
    QTest::newRow("a byte now and then") << SimulatedResponse::drip(body, 40ms);
    QTest::newRow("without an end") << SimulatedResponse::endless(body);
}

} // namespace

class StatusProviderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLimitsAndTheUserAgentAreSet();
    void everyServiceIsReadWithOneRequest_data();
    void everyServiceIsReadWithOneRequest();
    void everyServiceIsProbedWithOneRequest_data();
    void everyServiceIsProbedWithOneRequest();
    void noCheckIsAnsweredFromACache();
    void checksAtTheSameTimeAreIndependent();
    void theHttpStatusOfAPageIsIgnored_data();
    void theHttpStatusOfAPageIsIgnored();
    void theHttpStatusOfTheFeedIsIgnored_data();
    void theHttpStatusOfTheFeedIsIgnored();
    void anErrorPageReadsUnreachable_data();
    void anErrorPageReadsUnreachable();
    void aCaptivePortalReadsUnreachable();
    void aBrokenTransferOfAPageReadsUnreachable_data();
    void aBrokenTransferOfAPageReadsUnreachable();
    void aBrokenTransferOfTheFeedReadsUnreachable_data();
    void aBrokenTransferOfTheFeedReadsUnreachable();
    void anOfflineNetworkReadsUnreachable();
    void anInvalidOriginGivesNoRequest_data();
    void anInvalidOriginGivesNoRequest();
    void redirectsAreFollowed();
    void aRedirectLoopReadsUnreachable();
    void compressedBodiesAreRead();
    void aMaintenanceIndicatorReadsThePagesDescription();
    void geminiIncidentsAreRead_data();
    void geminiIncidentsAreRead();
    void aReadingReflectsTheCurrentDocument();
    void theSameDocumentIsReadForEachSubject();
    void anyAnswerBelow500IsUsable_data();
    void anyAnswerBelow500IsUsable();
    void aRedirectedProbeIsJudgedByItsFinalStatus_data();
    void aRedirectedProbeIsJudgedByItsFinalStatus();
    void aBrokenProbeIsNotUsable_data();
    void aBrokenProbeIsNotUsable();
    void anOfflineProbeIsNotUsable();
    void abortedChecksFailAtOnce();
};

void StatusProviderTest::theLimitsAndTheUserAgentAreSet()
{
    QCOMPARE(StatusProvider::userAgent, "Kelvo/1.0 (macOS status watcher)"_ba);
    QCOMPARE(StatusProvider::limits.idleTimeout, 15s);
}

void StatusProviderTest::everyServiceIsReadWithOneRequest_data()
{
    QTest::addColumn<ServiceID>("id");
    QTest::addColumn<QString>("host");
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("Claude") << ServiceID::claude << pageHost << summaryPath;
    QTest::newRow("ChatGPT") << ServiceID::chatgpt << u"status.openai.com"_s << summaryPath;
    QTest::newRow("Cursor") << ServiceID::cursor << u"status.cursor.com"_s << summaryPath;
    QTest::newRow("Gemini") << ServiceID::gemini << googleHost << feedPath;
    QTest::newRow("GitHub Copilot") << ServiceID::copilot << u"www.githubstatus.com"_s << summaryPath;
    QTest::newRow("Anthropic API") << ServiceID::anthropicAPI << pageHost << summaryPath;
    QTest::newRow("OpenAI API") << ServiceID::openaiAPI << u"status.openai.com"_s << summaryPath;
    QTest::newRow("Claude Code") << ServiceID::claudeCode << pageHost << summaryPath;
}

void StatusProviderTest::everyServiceIsReadWithOneRequest()
{
    QFETCH(ServiceID, id);
    QFETCH(QString, host);
    QFETCH(QByteArray, path);
    World world;
    QCOMPARE(world.check(Service::by(id)), operational);
    QCOMPARE(world.internet.requests().size(), 1);
    const auto request = world.internet.requests().first();
    QCOMPARE(request.method, "GET"_ba);
    QCOMPARE(request.scheme, u"https"_s);
    QCOMPARE(request.host, host);
    QCOMPARE(request.path, path);
    QCOMPARE(request.header("User-Agent"), "Kelvo/1.0 (macOS status watcher)"_ba);
    QVERIFY(request.body.isEmpty());
}

void StatusProviderTest::everyServiceIsProbedWithOneRequest_data()
{
    QTest::addColumn<ServiceID>("id");
    QTest::addColumn<QString>("host");
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("Claude") << ServiceID::claude << u"claude.ai"_s << "/login"_ba;
    QTest::newRow("ChatGPT") << ServiceID::chatgpt << u"chatgpt.com"_s << "/"_ba;
    QTest::newRow("Cursor") << ServiceID::cursor << u"cursor.com"_s << "/"_ba;
    QTest::newRow("Gemini") << ServiceID::gemini << u"gemini.google.com"_s << "/"_ba;
    QTest::newRow("GitHub Copilot") << ServiceID::copilot << u"api.githubcopilot.com"_s << "/"_ba;
    QTest::newRow("Anthropic API") << ServiceID::anthropicAPI << u"api.anthropic.com"_s << "/v1/models"_ba;
    QTest::newRow("OpenAI API") << ServiceID::openaiAPI << u"api.openai.com"_s << "/v1/models"_ba;
    QTest::newRow("Claude Code") << ServiceID::claudeCode << u"api.anthropic.com"_s << "/v1/models"_ba;
}

void StatusProviderTest::everyServiceIsProbedWithOneRequest()
{
    QFETCH(ServiceID, id);
    QFETCH(QString, host);
    QFETCH(QByteArray, path);
    World world;
    QCOMPARE(world.probe(id), true);
    QCOMPARE(world.internet.requests().size(), 1);
    const auto request = world.internet.requests().first();
    QCOMPARE(request.method, "GET"_ba);
    QCOMPARE(request.scheme, u"https"_s);
    QCOMPARE(request.host, host);
    QCOMPARE(request.path, path);
    QCOMPARE(request.header("User-Agent"), "Kelvo/1.0 (macOS status watcher)"_ba);
    QVERIFY(!request.hasHeader("Authorization"));
    QVERIFY(!request.hasHeader("x-api-key"));
    QVERIFY(request.body.isEmpty());
}

void StatusProviderTest::noCheckIsAnsweredFromACache()
{
    World world;
    const auto cacheable = SimulatedResponse::json(summary(u"operational"_s))
                               .with("Cache-Control", "max-age=3600")
                               .with("ETag", "\"1\"")
                               .with("Last-Modified", "Mon, 05 Jan 2026 09:00:00 GMT");
    world.internet.respond(pageHost, summaryPath, cacheable);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(world.page(), operational);
    }
    QCOMPARE(world.internet.requests().size(), 3);
    for (const auto &request : world.internet.requests()) {
        QVERIFY(!request.hasHeader("If-None-Match"));
        QVERIFY(!request.hasHeader("If-Modified-Since"));
    }
}

void StatusProviderTest::checksAtTheSameTimeAreIndependent()
{
    World world;
    world.internet.setComponent(StatusPage::Claude, u"Claude Code"_s, u"major_outage"_s);
    // Three services share a page, and each of them requests it.
    const auto chat = world.provider.checkStatuspage(pageBase, {u"claude.ai"_s});
    const auto api = world.provider.checkStatuspage(pageBase, {u"Claude API"_s});
    const auto code = world.provider.checkStatuspage(pageBase, {u"Claude Code"_s});
    QTRY_VERIFY(chat.isFinished() && api.isFinished() && code.isFinished());
    QCOMPARE(chat.result(), operational);
    QCOMPARE(api.result(), operational);
    QCOMPARE(code.result(), majorOutage);
    QCOMPARE(world.internet.requestsTo(pageHost).size(), 3);
}

void StatusProviderTest::theHttpStatusOfAPageIsIgnored_data()
{
    QTest::addColumn<int>("status");
    for (const int status : {200, 203, 400, 401, 403, 404, 429, 500, 502, 503, 504}) {
        QTest::addRow("%d", status) << status;
    }
}

void StatusProviderTest::theHttpStatusOfAPageIsIgnored()
{
    QFETCH(int, status);
    World world;
    world.internet.respond(pageHost, summaryPath, SimulatedResponse::json(summary(u"major_outage"_s), status));
    QCOMPARE(world.page(), majorOutage);
    world.internet.respond(pageHost, summaryPath, SimulatedResponse::json(summary(u"operational"_s), status));
    QCOMPARE(world.page(), operational);
}

void StatusProviderTest::theHttpStatusOfTheFeedIsIgnored_data()
{
    theHttpStatusOfAPageIsIgnored_data();
}

void StatusProviderTest::theHttpStatusOfTheFeedIsIgnored()
{
    QFETCH(int, status);
    World world;
    world.internet.respond(googleHost, feedPath,
                           SimulatedResponse::json(json(QJsonArray{currentIncident(u"Gemini"_s)}), status));
    QCOMPARE(world.gemini(), (StatusReading{ServiceHealth::degraded, u"Service disruption"_s}));
}

void StatusProviderTest::anErrorPageReadsUnreachable_data()
{
    QTest::addColumn<int>("status");
    for (const int status : {200, 401, 403, 404, 429, 500, 503}) {
        QTest::addRow("%d", status) << status;
    }
}

void StatusProviderTest::anErrorPageReadsUnreachable()
{
    QFETCH(int, status);
    World world;
    world.internet.respond(pageHost, summaryPath, SimulatedResponse::html(errorPage, status));
    world.internet.respond(googleHost, feedPath, SimulatedResponse::html(errorPage, status));
    QCOMPARE(world.page(), unreachable);
    QCOMPARE(world.gemini(), unreachable);
    QCOMPARE(world.internet.requests().size(), 2);
}

void StatusProviderTest::aCaptivePortalReadsUnreachable()
{
    World world;
    world.internet.respond(pageHost, summaryPath, SimulatedResponse::redirect("https://wifi.example/login"));
    world.internet.respond(u"wifi.example"_s, {}, SimulatedResponse::html("<html><form>Sign in</form></html>"));
    QCOMPARE(world.page(), unreachable);
}

void StatusProviderTest::aBrokenTransferOfAPageReadsUnreachable_data()
{
    addBrokenTransfers(summary(u"operational"_s));
}

void StatusProviderTest::aBrokenTransferOfAPageReadsUnreachable()
{
    QFETCH(SimulatedResponse, response);
    World world(impatient);
    world.internet.respond(pageHost, summaryPath, response);
    QCOMPARE(world.page(), unreachable);
    // The next check sends a new request.
    world.internet.respond(pageHost, summaryPath, SimulatedResponse::json(summary(u"partial_outage"_s)));
    QCOMPARE(world.page(), partialOutage);
}

void StatusProviderTest::aBrokenTransferOfTheFeedReadsUnreachable_data()
{
    addBrokenTransfers("[" + QByteArray(2000, ' ') + "]");
}

void StatusProviderTest::aBrokenTransferOfTheFeedReadsUnreachable()
{
    QFETCH(SimulatedResponse, response);
    World world(impatient);
    world.internet.respond(googleHost, feedPath, response);
    QCOMPARE(world.gemini(), unreachable);
    world.internet.respond(googleHost, feedPath, SimulatedResponse::json("[]"));
    QCOMPARE(world.gemini(), operational);
}

void StatusProviderTest::anOfflineNetworkReadsUnreachable()
{
    World world;
    world.internet.setOffline(true);
    for (const auto &service : Service::catalog()) {
        QCOMPARE(world.check(service), unreachable);
    }
    world.internet.setOffline(false);
    for (const auto &service : Service::catalog()) {
        QCOMPARE(world.check(service), operational);
    }
}

void StatusProviderTest::anInvalidOriginGivesNoRequest_data()
{
    QTest::addColumn<QString>("base");
    for (const auto &base :
         {u""_s, u"status.claude.com"_s, u"https://"_s, u"https://status claude.com"_s, u"http://[::1"_s,
          u"https://status.claude.com:port"_s, u"https://status.claude.com/a b"_s, u"file://"_s}) {
        QTest::newRow(qPrintable(u'"' + base + u'"')) << base;
    }
}

void StatusProviderTest::anInvalidOriginGivesNoRequest()
{
    QFETCH(QString, base);
    World world;
    QCOMPARE(world.page({u"claude.ai"_s}, base), unreachable);
    QCOMPARE(world.requestsBegun, 0);
}

void StatusProviderTest::redirectsAreFollowed()
{
    World world;
    world.internet.respond(u"status.anthropic.com"_s, summaryPath,
                           SimulatedResponse::redirect("https://status.claude.com/api/v2/summary.json"));
    world.internet.respond(pageHost, summaryPath, SimulatedResponse::json(summary(u"partial_outage"_s)));
    QCOMPARE(world.page({u"claude.ai"_s}, u"https://status.anthropic.com"_s), partialOutage);
    // Qt sometimes sends a redirected request twice, so the requests are not counted.
    QCOMPARE(world.internet.requests().first().host, u"status.anthropic.com"_s);
    QCOMPARE(world.internet.requests().last().host, u"status.claude.com"_s);
    QCOMPARE(world.internet.requests().last().header("User-Agent"), "Kelvo/1.0 (macOS status watcher)"_ba);
}

void StatusProviderTest::aRedirectLoopReadsUnreachable()
{
    World world;
    world.internet.respond(pageHost, summaryPath,
                           SimulatedResponse::redirect("https://status.claude.com/api/v2/summary.json"));
    QCOMPARE(world.page(), unreachable);
}

void StatusProviderTest::compressedBodiesAreRead()
{
    World world;
    world.internet.respond(pageHost, summaryPath, SimulatedResponse::json(summary(u"major_outage"_s)).gzipped());
    world.internet.respond(googleHost, feedPath,
                           SimulatedResponse::json(json(QJsonArray{currentIncident(u"Gemini"_s)})).gzipped());
    QCOMPARE(world.page(), majorOutage);
    QCOMPARE(world.gemini(), (StatusReading{ServiceHealth::degraded, u"Service disruption"_s}));
}

void StatusProviderTest::aMaintenanceIndicatorReadsThePagesDescription()
{
    World world;
    world.internet.setIndicator(StatusPage::Claude, u"maintenance"_s, u"Service Under Maintenance"_s);
    QCOMPARE(world.page({u"no such component"_s}),
             (StatusReading{ServiceHealth::unknown, u"Service Under Maintenance"_s}));
    QCOMPARE(world.page(), operational);
}

void StatusProviderTest::geminiIncidentsAreRead_data()
{
    QTest::addColumn<QString>("product");
    QTest::addColumn<QString>("severity");
    QTest::addColumn<bool>("locations");
    QTest::addColumn<StatusReading>("expected");
    const StatusReading disruption{ServiceHealth::degraded, u"Service disruption"_s};
    const StatusReading outage{ServiceHealth::outage, u"Service outage"_s};
    QTest::newRow("medium") << u"Gemini"_s << u"medium"_s << false << disruption;
    QTest::newRow("high") << u"Gemini"_s << u"high"_s << false << outage;
    QTest::newRow("with locations") << u"Gemini"_s << u"medium"_s << true << outage;
    QTest::newRow("another product") << u"Gmail"_s << u"high"_s << true << operational;
}

void StatusProviderTest::geminiIncidentsAreRead()
{
    QFETCH(QString, product);
    QFETCH(QString, severity);
    QFETCH(bool, locations);
    QFETCH(StatusReading, expected);
    World world;
    world.internet.setEndedIncidents(500);
    QCOMPARE(world.gemini(), operational);
    world.internet.setGeminiIncident(SimulatedIncident{product, severity, locations});
    QCOMPARE(world.gemini(), expected);
    world.internet.setGeminiIncident(std::nullopt);
    QCOMPARE(world.gemini(), operational);
}

void StatusProviderTest::aReadingReflectsTheCurrentDocument()
{
    World world;
    QCOMPARE(world.page(), operational);
    world.internet.setComponent(StatusPage::Claude, u"claude.ai"_s, u"partial_outage"_s);
    QCOMPARE(world.page(), partialOutage);
    world.internet.setComponent(StatusPage::Claude, u"claude.ai"_s, u"major_outage"_s);
    QCOMPARE(world.page(), majorOutage);
    world.internet.setAllOperational(StatusPage::Claude);
    QCOMPARE(world.page(), operational);
}

void StatusProviderTest::theSameDocumentIsReadForEachSubject()
{
    World world;
    world.internet.setComponent(StatusPage::Claude, u"claude.ai"_s, u"major_outage"_s);
    for (int round = 0; round < 2; ++round) {
        QCOMPARE(world.page({u"claude.ai"_s}), majorOutage);
        QCOMPARE(world.page({u"Claude Code"_s}), operational);
    }
    world.internet.setGeminiIncident(SimulatedIncident{u"Gemini"_s, u"high"_s, false});
    for (int round = 0; round < 2; ++round) {
        QCOMPARE(world.gemini().health, ServiceHealth::outage);
        QCOMPARE(world.wait(world.provider.checkGoogleDashboard(u"Gmail"_s), unreachable), operational);
    }
}

void StatusProviderTest::anyAnswerBelow500IsUsable_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("usable");
    for (const int status :
         {200, 201, 204, 299, 300, 304, 400, 401, 402, 403, 404, 405, 407, 409, 410, 418, 421, 429, 451, 499}) {
        QTest::addRow("%d", status) << status << true;
    }
    for (const int status : {500, 501, 502, 503, 504, 520, 529, 599}) {
        QTest::addRow("%d", status) << status << false;
    }
}

void StatusProviderTest::anyAnswerBelow500IsUsable()
{
    QFETCH(int, status);
    World world;
    world.internet.setProbe(u"claude.ai"_s, status);
    world.internet.setProbe(u"api.anthropic.com"_s, status);
    QTEST(world.probe(ServiceID::claude).value(), "usable");
    QTEST(world.probe(ServiceID::anthropicAPI).value(), "usable");
    QCOMPARE(world.internet.requests().size(), 2);
}

void StatusProviderTest::aRedirectedProbeIsJudgedByItsFinalStatus_data()
{
    QTest::addColumn<int>("end");
    QTest::addColumn<bool>("usable");
    QTest::newRow("to a page that answers 200") << 200 << true;
    QTest::newRow("to a page that answers 403") << 403 << true;
    QTest::newRow("to a page that answers 503") << 503 << false;
    QTest::newRow("to nowhere") << 0 << false;
    QTest::newRow("in a circle") << 302 << false;
}

void StatusProviderTest::aRedirectedProbeIsJudgedByItsFinalStatus()
{
    QFETCH(int, end);
    World world;
    world.internet.respond(u"claude.ai"_s, "/login", SimulatedResponse::redirect("https://elsewhere.example/x", 301));
    if (end == 302) {
        world.internet.respond(u"elsewhere.example"_s, {}, SimulatedResponse::redirect("https://claude.ai/login"));
    } else if (end != 0) {
        world.internet.respond(u"elsewhere.example"_s, {}, SimulatedResponse::ofStatus(end));
    }
    QTEST(world.probe().value(), "usable");
    QVERIFY(world.internet.requestsTo(u"claude.ai"_s).size() >= 1);
}

void StatusProviderTest::aBrokenProbeIsNotUsable_data()
{
    addBrokenTransfers(QByteArray(2000, 'x'));
}

void StatusProviderTest::aBrokenProbeIsNotUsable()
{
    QFETCH(SimulatedResponse, response);
    World world(impatient);
    world.internet.respond(u"claude.ai"_s, "/login", response);
    QCOMPARE(world.probe(), false);
    world.internet.respond(u"claude.ai"_s, "/login", SimulatedResponse::ofStatus(200));
    QCOMPARE(world.probe(), true);
}

void StatusProviderTest::anOfflineProbeIsNotUsable()
{
    World world;
    world.internet.setOffline(true);
    for (const auto id : allServiceIDs) {
        QCOMPARE(world.probe(id), false);
    }
}

void StatusProviderTest::abortedChecksFailAtOnce()
{
    World world({.idleTimeout = 60s});
    world.internet.respond(QUrl(pageBase).host(), summaryPath, SimulatedResponse::silence());
    world.internet.respond(googleHost, feedPath, SimulatedResponse::silence());
    world.internet.respond(u"claude.ai"_s, {}, SimulatedResponse::silence());
    const auto page = world.provider.read(Service::by(ServiceID::claude));
    const auto feed = world.provider.read(Service::by(ServiceID::gemini));
    const auto probe = world.provider.probe(Service::by(ServiceID::claude));
    QTRY_COMPARE(world.internet.requests().size(), 3);

    world.provider.abortAll();

    QVERIFY(settles(page) && settles(feed) && settles(probe));
    QCOMPARE(page.result(), unreachable);
    QCOMPARE(feed.result(), unreachable);
    QVERIFY(!probe.result());
}

QTEST_GUILESS_MAIN(StatusProviderTest)
#include "tst_statusprovider.moc"
