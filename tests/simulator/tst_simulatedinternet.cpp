#include "http/HttpSession.h"
#include "simulator/ReroutedNetwork.h"
#include "simulator/SimulatedInternet.h"
#include "support/Settles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTest>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Other tests rely on the simulated internet. These tests verify the behaviour that they rely on.
class SimulatedInternetTest : public QObject
{
    Q_OBJECT

private:
    HttpResponse fetch(const QString &url)
    {
        const auto future = session_->get(QUrl(url));
        return settles(future) ? future.result() : HttpResponse{.status = -1, .body = {}};
    }
    QJsonObject summary(StatusPage page)
    {
        return QJsonDocument::fromJson(
                   fetch(u"https://%1/api/v2/summary.json"_s.arg(SimulatedInternet::host(page))).body)
            .object();
    }
    QJsonArray feed()
    {
        return QJsonDocument::fromJson(fetch(u"https://www.google.com/appsstatus/dashboard/incidents.json"_s).body)
            .array();
    }
    static QStringList statuses(const QJsonObject &summary, const QString &component)
    {
        QStringList found;
        for (const QJsonValue &value : summary[u"components"_s].toArray()) {
            if (value[u"name"_s].toString() == component) {
                found.append(value[u"status"_s].toString());
            }
        }
        return found;
    }

    std::unique_ptr<SimulatedInternet> internet_;
    std::unique_ptr<HttpSession> session_;

private Q_SLOTS:
    void init()
    {
        internet_ = std::make_unique<SimulatedInternet>();
        session_ = std::make_unique<HttpSession>(
            HttpNetwork{[this] { return std::make_unique<ReroutedNetwork>(*internet_); }},
            HttpLimits{.idleTimeout = 5s});
    }
    void cleanup()
    {
        session_.reset();
        internet_.reset();
    }

    void everyPageIsInitiallyOperational()
    {
        for (const auto page : {StatusPage::Claude, StatusPage::OpenAI, StatusPage::Cursor, StatusPage::GitHub}) {
            const QJsonObject document = summary(page);
            QCOMPARE(document[u"status"_s][u"indicator"_s].toString(), u"none"_s);
            QVERIFY(document[u"components"_s].toArray().size() > 4);
            for (const QJsonValue &component : document[u"components"_s].toArray()) {
                QCOMPARE(component[u"status"_s].toString(), u"operational"_s);
            }
        }
    }

    void pagesHaveTheTwoPublishedShapes()
    {
        const QJsonObject longShape = summary(StatusPage::Cursor);
        QVERIFY(longShape.contains(u"incidents"_s));
        const QJsonObject group = longShape[u"components"_s].toArray().first().toObject();
        QCOMPARE(group[u"group"_s].toBool(), true);
        QCOMPARE(group[u"components"_s].toArray().size(), 4);
        const QJsonObject member = longShape[u"components"_s].toArray().at(1).toObject();
        QCOMPARE(member[u"group_id"_s], group[u"id"_s]);

        const QJsonObject shortShape = summary(StatusPage::OpenAI);
        QVERIFY(!shortShape.contains(u"incidents"_s));
        QVERIFY(!shortShape[u"components"_s].toArray().first().toObject().contains(u"group"_s));
        QCOMPARE(statuses(shortShape, u"Login"_s).size(), 2);
    }

    void componentsAndTheIndicatorCanBeSet()
    {
        internet_->setComponent(StatusPage::Claude, u"claude.ai"_s, u"major_outage"_s);
        internet_->setComponent(StatusPage::OpenAI, u"Login"_s, u"partial_outage"_s);
        internet_->setComponent(StatusPage::Claude, u"New one"_s, u"operational"_s);
        internet_->setIndicator(StatusPage::Claude, u"major"_s);
        QCOMPARE(statuses(summary(StatusPage::Claude), u"claude.ai"_s), QStringList{u"major_outage"_s});
        QCOMPARE(statuses(summary(StatusPage::Claude), u"Claude Code"_s), QStringList{u"operational"_s});
        QCOMPARE(statuses(summary(StatusPage::Claude), u"New one"_s), QStringList{u"operational"_s});
        QCOMPARE(summary(StatusPage::Claude)[u"status"_s][u"indicator"_s].toString(), u"major"_s);
        QCOMPARE(statuses(summary(StatusPage::OpenAI), u"Login"_s), QStringList(2, u"partial_outage"_s));

        internet_->setAllOperational(StatusPage::Claude);
        QCOMPARE(statuses(summary(StatusPage::Claude), u"claude.ai"_s), QStringList{u"operational"_s});
        QCOMPARE(summary(StatusPage::Claude)[u"status"_s][u"indicator"_s].toString(), u"none"_s);
    }

    void theFeedContainsEndedIncidentsAndTheCurrentOne()
    {
        for (const QJsonValue &incident : feed()) {
            QVERIFY(incident.toObject().contains(u"end"_s));
        }
        internet_->setEndedIncidents(500);
        internet_->setGeminiIncident(SimulatedIncident{.severity = u"high"_s});
        QCOMPARE(feed().size(), 501);
        const QJsonObject open = feed().first().toObject();
        QVERIFY(!open.contains(u"end"_s));
        QVERIFY(!open.contains(u"currently_affected_locations"_s));
        QCOMPARE(open[u"severity"_s].toString(), u"high"_s);
        QCOMPARE(open[u"affected_products"_s][0][u"title"_s].toString(), u"Gemini"_s);
        internet_->setGeminiIncident(SimulatedIncident{.hasAffectedLocations = true});
        QVERIFY(feed().first().toObject().contains(u"currently_affected_locations"_s));
        internet_->setGeminiIncident(std::nullopt);
        QCOMPARE(feed().size(), 500);
        QVERIFY(fetch(u"https://www.google.com/appsstatus/dashboard/incidents.json"_s).body.size() > 1'000'000);
    }

    void servicesAnswerWithTheProbeStatusThatWasSet()
    {
        QCOMPARE(fetch(u"https://claude.ai/login"_s).status, 200);
        QCOMPARE(fetch(u"https://api.anthropic.com/v1/models"_s).status, 401);
        internet_->setProbe(u"api.anthropic.com"_s, 503);
        QCOMPARE(fetch(u"https://api.anthropic.com/v1/models"_s).status, 503);
        QCOMPARE(fetch(u"https://api.openai.com/v1/models"_s).status, 401);
    }

    void theResponseToAPathTakesPrecedence()
    {
        const auto summaryUrl = u"https://status.claude.com/api/v2/summary.json"_s;
        internet_->respond(u"status.claude.com"_s, "/api/v2/summary.json"_ba, SimulatedResponse::ofStatus(502));
        QCOMPARE(fetch(summaryUrl).status, 502);
        internet_->forget(u"status.claude.com"_s, "/api/v2/summary.json"_ba);
        QCOMPARE(fetch(summaryUrl).status, 200);
        QCOMPARE(fetch(u"https://status.claude.com/elsewhere"_s).status, 404);
    }

    void theLastResponseInTurnIsRepeated()
    {
        internet_->respondInTurn(u"claude.ai"_s, {},
                                 {SimulatedResponse::ofStatus(500), SimulatedResponse::ofStatus(200)});
        QCOMPARE(fetch(u"https://claude.ai/login"_s).status, 500);
        QCOMPARE(fetch(u"https://claude.ai/login"_s).status, 200);
        QCOMPARE(fetch(u"https://claude.ai/login"_s).status, 200);
    }

    void unreachableAndUnknownHostsDoNotAnswer()
    {
        QCOMPARE(fetch(u"https://stranger.example/"_s).status, std::nullopt);
        internet_->setUnreachable(u"claude.ai"_s);
        QCOMPARE(fetch(u"https://claude.ai/login"_s).status, std::nullopt);
        internet_->setUnreachable(u"claude.ai"_s, false);
        QCOMPARE(fetch(u"https://claude.ai/login"_s).status, 200);
        internet_->setOffline(true);
        QCOMPARE(fetch(u"https://claude.ai/login"_s).status, std::nullopt);
    }

    void connectionsAreKeptOrClosedAsConfigured()
    {
        // HttpSession closes its connections by itself; this client does not.
        ReroutedNetwork client(*internet_);
        const auto fetch = [&client] {
            const std::unique_ptr<QNetworkReply> reply(client.get(QNetworkRequest(QUrl(u"https://claude.ai/login"_s))));
            QSignalSpy finished(reply.get(), &QNetworkReply::finished);
            return finished.wait(10'000) && reply->error() == QNetworkReply::NoError;
        };
        QVERIFY(fetch());
        QVERIFY(fetch());
        QCOMPARE(internet_->connectionsAccepted(), 1);
        internet_->closeIdleConnections();
        QTRY_COMPARE(internet_->connectionsOpen(), 0);
        internet_->setKeepsConnections(false);
        QVERIFY(fetch());
        QVERIFY(fetch());
        QCOMPARE(internet_->connectionsAccepted(), 3);
        QTRY_COMPARE(internet_->connectionsOpen(), 0);
    }

    void splitAndPipelinedRequestsAreAnswered()
    {
        QTcpSocket client;
        client.connectToHost(QHostAddress::LocalHost, internet_->port());
        QVERIFY(client.waitForConnected());
        const auto one = "POST /a HTTP/1.1\r\nHost: hooks.slack.com\r\nContent-Length: 2\r\n\r\nhi"_ba;
        for (const char byte : one) {
            client.write(&byte, 1);
            client.flush();
            QCoreApplication::processEvents();
        }
        client.write(one + one);
        QTRY_COMPARE(internet_->requestsTo(u"hooks.slack.com"_s).size(), 3);
        QCOMPARE(internet_->requests().constLast().body, "hi"_ba);
        QByteArray answers;
        QTRY_COMPARE((answers += client.readAll()).count("HTTP/1.1 200 OK"), 3);
    }

    void malformedRequestsCloseOnlyTheirOwnConnection_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addRow("no request line") << "nonsense\r\n\r\n"_ba;
        QTest::addRow("negative length") << "POST / HTTP/1.1\r\nContent-Length: -5\r\n\r\n"_ba;
        QTest::addRow("too long") << QByteArray(2 * 1024 * 1024, 'x');
    }
    void malformedRequestsCloseOnlyTheirOwnConnection()
    {
        QFETCH(const QByteArray, bytes);
        QTcpSocket client;
        client.connectToHost(QHostAddress::LocalHost, internet_->port());
        client.write(bytes);
        QTRY_COMPARE(internet_->connectionsAccepted(), 1);
        QTRY_COMPARE(internet_->connectionsOpen(), 0);
        QCOMPARE(fetch(u"https://claude.ai/login"_s).status, 200);
    }
};

QTEST_GUILESS_MAIN(SimulatedInternetTest)
#include "tst_simulatedinternet.moc"
