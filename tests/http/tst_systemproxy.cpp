#include "http/HttpRoute.h"
#include "http/HttpSession.h"
#include "simulator/CertificateAuthority.h"
#include "simulator/SimulatedInternet.h"
#include "support/Settles.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::array proxyVariables{"http_proxy", "https_proxy", "no_proxy", "all_proxy",
                                    "HTTP_PROXY", "HTTPS_PROXY", "NO_PROXY", "ALL_PROXY"};

} // namespace

/// Checks the proxies that a session with the default network uses. The hosts end in ".invalid" and cannot be resolved, so
/// a response can only come through the proxy.
class SystemProxyTest : public QObject
{
    Q_OBJECT

private:
    std::optional<int> statusOf(const QUrl &url)
    {
        HttpSession session({}, {.idleTimeout = 5s});
        const auto future = session.get(url);
        return settles(future) ? future.result().status : std::optional(-1);
    }

    std::unique_ptr<SimulatedInternet> internet_;

private Q_SLOTS:
    void init()
    {
        for (const char *variable : proxyVariables) {
            qunsetenv(variable);
        }
        internet_ = std::make_unique<SimulatedInternet>();
        internet_->respond(u"page.invalid"_s, {}, SimulatedResponse::ofStatus(200));
    }
    void cleanup() { internet_.reset(); }

    void requestsGoDirectlyWithoutAProxy()
    {
        QCOMPARE(statusOf(QUrl(u"http://page.invalid/"_s)), std::nullopt);
        QCOMPARE(internet_->connectionsAccepted(), 0);
    }

    void plainRequestsGoThroughTheProxyOfTheEnvironment_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addRow("http_proxy") << "http_proxy"_ba;
        QTest::addRow("HTTP_PROXY") << "HTTP_PROXY"_ba;
    }
    void plainRequestsGoThroughTheProxyOfTheEnvironment()
    {
        QFETCH(const QByteArray, variable);
        qputenv(variable, internet_->proxyUrl().toEncoded());
        QCOMPARE(statusOf(QUrl(u"http://page.invalid/a"_s)), 200);
        QCOMPARE(internet_->requests().constFirst().path, "/a"_ba);
    }

    void encryptedRequestsGoThroughTheProxyOfTheEnvironment_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addRow("https_proxy") << "https_proxy"_ba;
        QTest::addRow("HTTPS_PROXY") << "HTTPS_PROXY"_ba;
        QTest::addRow("http_proxy, for want of one for https") << "http_proxy"_ba;
    }
    void encryptedRequestsGoThroughTheProxyOfTheEnvironment()
    {
        QFETCH(const QByteArray, variable);
        const auto authority = CertificateAuthority::make({u"page.invalid"_s});
        QVERIFY(authority);
        internet_->setCertificate(authority->certificate(), authority->privateKey());
        qputenv(variable, internet_->proxyUrl().toEncoded());

        const QSslConfiguration before = QSslConfiguration::defaultConfiguration();
        QSslConfiguration::setDefaultConfiguration(authority->clientConfiguration());
        const auto status = statusOf(QUrl(u"https://page.invalid/a"_s));
        QSslConfiguration::setDefaultConfiguration(before);

        QCOMPARE(status, 200);
        QCOMPARE(internet_->requests().constFirst().scheme, u"https"_s);
    }

    void hostsInNoProxyBypassTheProxy_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addRow("no_proxy") << "no_proxy"_ba;
        QTest::addRow("NO_PROXY") << "NO_PROXY"_ba;
    }
    void hostsInNoProxyBypassTheProxy()
    {
        QFETCH(const QByteArray, variable);
        internet_->respond(u"other.invalid"_s, {}, SimulatedResponse::ofStatus(200));
        qputenv("http_proxy", internet_->proxyUrl().toEncoded());
        qputenv(variable, "page.invalid");
        QCOMPARE(statusOf(QUrl(u"http://page.invalid/"_s)), std::nullopt);
        QCOMPARE(internet_->connectionsAccepted(), 0);
        QCOMPARE(statusOf(QUrl(u"http://other.invalid/"_s)), 200);
    }

    void requestsToThisMachineBypassTheProxy()
    {
        qputenv("http_proxy", internet_->proxyUrl().toEncoded());
        internet_->setOffline(true);
        SimulatedInternet local;
        local.respond(u"127.0.0.1"_s, {}, SimulatedResponse::ofStatus(200));
        QCOMPARE(statusOf(QUrl(u"http://127.0.0.1:%1/"_s.arg(local.port()))), 200);
        QCOMPARE(internet_->connectionsAccepted(), 0);
    }

    void theHostToConnectToMustResolve_data()
    {
        QTest::addColumn<QByteArray>("proxy");
        QTest::addColumn<QUrl>("origin");
        QTest::addColumn<bool>("resolves");
        const QUrl unknown(u"http://page.invalid"_s);
        const QUrl known(u"http://0.0.0.0"_s);
        QTest::addRow("an unknown host") << QByteArray() << unknown << false;
        QTest::addRow("an address") << QByteArray() << known << true;
        QTest::addRow("this machine") << QByteArray() << QUrl(u"http://localhost"_s) << true;
        QTest::addRow("an unknown host behind a proxy") << "http://127.0.0.1:1"_ba << unknown << true;
        QTest::addRow("an unknown host behind a proxy with a name") << "http://localhost:1"_ba << unknown << true;
        QTest::addRow("an unknown proxy") << "http://proxy.invalid:1"_ba << known << false;
        QTest::addRow("an unknown SOCKS proxy") << "socks5://proxy.invalid:1"_ba << known << false;
    }
    void theHostToConnectToMustResolve()
    {
        QFETCH(const QByteArray, proxy);
        QFETCH(const QUrl, origin);
        qputenv("http_proxy", proxy);
        QTEST(lookUpSystemRoute(origin).has_value(), "resolves");
    }

    void thisMachineHasADirectRoute_data()
    {
        QTest::addColumn<QUrl>("origin");
        for (const auto *origin : {"http://localhost", "http://127.0.0.1:80", "http://127.1.2.3", "http://[::1]"}) {
            QTest::newRow(origin) << QUrl(QString::fromLatin1(origin));
        }
    }
    void thisMachineHasADirectRoute()
    {
        QFETCH(const QUrl, origin);
        qputenv("http_proxy", "http://proxy.invalid:1");
        QCOMPARE(lookUpSystemRoute(origin), HttpRoute{QNetworkProxy::NoProxy});
    }

    void anUnreachableProxyIsAFailureAndIsNotBypassed()
    {
        // An address of this machine that is not a loopback address, because those bypass the proxy.
        internet_->respond(u"0.0.0.0"_s, {}, SimulatedResponse::ofStatus(200));
        const QUrl direct(u"http://0.0.0.0:%1/"_s.arg(internet_->port()));
        QCOMPARE(statusOf(direct), 200);
        internet_->clearRequests();

        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost));
        const QByteArray gone = "http://127.0.0.1:"_ba + QByteArray::number(closed.serverPort());
        closed.close();
        qputenv("http_proxy", gone);
        QCOMPARE(statusOf(direct), std::nullopt);
        QCOMPARE(internet_->requests().size(), 0);
    }
};

QTEST_GUILESS_MAIN(SystemProxyTest)
#include "tst_systemproxy.moc"
