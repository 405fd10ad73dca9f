#include "Fault.h"
#include "PeakMemory.h"
#include "alerts/NotifierStore.h"
#include "monitor/StatusStore.h"
#include "sources/StatusProvider.h"
#include "support/FakeLoginItem.h"
#include "support/FakeNetworkWatch.h"
#include "support/FakeNotificationCenter.h"
#include "support/FakeSleepWake.h"
#include "support/ManualClock.h"
#include "support/MemoryPreferences.h"
#include "support/ResultTable.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QNetworkProxy>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <array>
#include <map>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The limits that replace those of the program for a fault that only a time limit ends.
constexpr HttpLimits shortStatusLimits{.idleTimeout = 1000ms, .totalDeadline = 1500ms};
constexpr HttpLimits shortPostLimits{.idleTimeout = 1000ms, .totalDeadline = 1000ms};

/// How much the memory of the process may grow at most during a fault in six exchanges at the same time.
constexpr double memoryLimit = 128;

// ---- The services ----

/// The monitor reads three documents with the fault: two of status pages, because a fault must neither end nor begin an
/// outage, and one of the feed. It probes a fourth service, whose page is right, with the fault.
constexpr std::array services{ServiceID::claude, ServiceID::chatgpt, ServiceID::gemini, ServiceID::copilot};

struct Host
{
    const char *name;
    std::optional<Exchange> exchange; ///< the exchange whose fault this host has; nullopt for a host without faults
    std::optional<ServiceID> service; ///< the service whose document this host publishes
};

constexpr Host hosts[] = {
    {"status.claude.com", Exchange::page, ServiceID::claude},
    {"status.openai.com", Exchange::page, ServiceID::chatgpt},
    {"www.google.com", Exchange::feed, ServiceID::gemini},
    {"www.githubstatus.com", std::nullopt, ServiceID::copilot},
    {"claude.ai", std::nullopt, std::nullopt},
    {"gemini.google.com", std::nullopt, std::nullopt},
    {"api.githubcopilot.com", Exchange::probe, std::nullopt},
    {"hooks.slack.com", Exchange::slack, std::nullopt},
    {"api.telegram.org", Exchange::telegram, std::nullopt},
};

/// The document that says this of the service.
QByteArray document(ServiceID id, bool isUp)
{
    const auto &source = Service::by(id).source;
    if (const auto *page = std::get_if<StatuspageSource>(&source)) {
        const auto name = page->components.constFirst().toUtf8();
        return R"({"page":{"id":"p","name":"Page"},"status":{"indicator":")" + QByteArray(isUp ? "none" : "critical")
            + R"(","description":"words"},"components":[{"id":"c","name":")" + name + R"(","status":")"
            + (isUp ? "operational" : "major_outage") + R"("}]})";
    }
    return R"([{"id":"i","severity":"high","affected_products":[{"title":"Gemini","id":"g"}])"
        + QByteArray(isUp ? R"(,"end":"2026-01-01T00:00:00+00:00")" : "") + "}]";
}

bool isUpAtFirst(ServiceID id)
{
    return id == ServiceID::chatgpt;
}

// ---- The network ----

/// A network layer that connects to the servers of a test instead of the hosts that they stand for. It uses TLS as the
/// program does, but trusts only the authority of the test.
class RedirectedNetwork : public QNetworkAccessManager
{
public:
    RedirectedNetwork(std::map<QString, quint16> ports, const QSslConfiguration &tls)
        : ports_(std::move(ports))
        , tls_(tls)
    {
        setProxy(QNetworkProxy::NoProxy);
    }

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request, QIODevice *body) override
    {
        const auto host = request.url().host();
        const auto port = ports_.find(host);
        auto url = request.url();
        url.setHost(u"127.0.0.1"_s);
        url.setPort(port == ports_.end() ? 1 : port->second); // nobody listens on port 1
        auto redirected = request;
        redirected.setUrl(url);
        redirected.setPeerVerifyName(host);
        redirected.setSslConfiguration(tls_);
        return QNetworkAccessManager::createRequest(operation, redirected, body);
    }

private:
    std::map<QString, quint16> ports_;
    QSslConfiguration tls_;
};

/// The servers of all hosts.
class Servers
{
public:
    Servers()
    {
        QStringList names;
        for (const auto &host : hosts) {
            servers_[QString::fromLatin1(host.name)] = std::make_unique<FaultyServer>();
            names.append(QString::fromLatin1(host.name));
        }
        authority_ = CertificateAuthority::make(names);
        const auto stranger = CertificateAuthority::make(names);
        if (!authority_ || !stranger) {
            qFatal("cannot make certificates");
        }
        identities_ = {
            {Certificate::good, {authority_->certificate(), authority_->privateKey()}},
            {Certificate::expired, authority_->issue(names, -1).value()},
            {Certificate::selfSigned, authority_->selfSigned(names).value()},
            {Certificate::ofUnknownAuthority, {stranger->certificate(), stranger->privateKey()}},
            {Certificate::forAnotherHost, authority_->issue({u"another.example"_s}).value()},
        };
    }

    HttpNetwork network() const
    {
        std::map<QString, quint16> ports;
        for (const auto &[name, server] : servers_) {
            ports[name] = server->port();
        }
        return {[ports, tls = authority_->clientConfiguration()] {
            return std::make_unique<RedirectedNetwork>(ports, tls);
        }};
    }

    FaultyServer &server(const char *host) const { return *servers_.at(QString::fromLatin1(host)); }

    /// Every host works, and its document says that a service is as at first, or the opposite.
    void setGood(bool asAtFirst) const
    {
        for (const auto &host : hosts) {
            const auto body = host.service ? document(*host.service, isUpAtFirst(*host.service) == asAtFirst) : "{}"_ba;
            server(host.name).setBehaviour({.answer = [body](const ReceivedRequest &) { return goodAnswer(body); },
                                            .identity = identities_.at(Certificate::good)});
        }
    }

    /// Every document says the opposite of what it said at first, and the hosts of the exchanges have a fault.
    void setFaulty(const Fault &fault, int variant) const
    {
        setGood(false);
        for (const auto &host : hosts) {
            if (!host.exchange) {
                continue;
            }
            const auto body = host.service ? document(*host.service, !isUpAtFirst(*host.service)) : "{}"_ba;
            const auto answer = [fault, variant, host, body](const ReceivedRequest &request) {
                return fault.answer({*host.exchange, host.name, request.path, body, variant});
            };
            server(host.name).setBehaviour({.answer = answer,
                                            .answersBeforeTls = fault.moment == Moment::accept,
                                            .refusesConnections = fault.refusesConnections,
                                            .wantsClientCertificate = fault.wantsClientCertificate,
                                            .identity = identities_.at(fault.certificate)});
        }
    }

    int connectionsOpen() const
    {
        int sum = 0;
        for (const auto &[name, server] : servers_) {
            sum += server->connectionsOpen();
        }
        return sum;
    }

private:
    std::unique_ptr<CertificateAuthority> authority_;
    std::map<Certificate, TlsIdentity> identities_;
    std::map<QString, std::unique_ptr<FaultyServer>> servers_;
};

// ---- The program ----

/// The program from its sessions up to its stores.
struct Program
{
    Program(const HttpNetwork &network, const HttpLimits &statusLimits, const HttpLimits &postLimits)
        : statusSession(network, statusLimits, StatusProvider::userAgent)
        , postSession(network, postLimits)
    {
    }

    /// Gives the preferences of a user who watches the services and wants all alerts.
    static Preferences &chosen(MemoryPreferences &preferences)
    {
        QStringList names;
        for (const auto id : services) {
            names.append(rawValue(id));
        }
        preferences.place(u"serviceOrder"_s, names);
        preferences.place(u"enabledServices"_s, names);
        preferences.place(u"outageAlertsEnabled"_s, true);
        return preferences;
    }

    QStringList alerts() const
    {
        auto titles = center.titles();
        titles.sort();
        return titles;
    }

    HttpSession statusSession;
    HttpSession postSession;
    StatusProvider provider{statusSession};
    MemoryPreferences preferences;
    FakeLoginItem loginItem;
    FakeNotificationCenter center;
    ManualClock clock;
    FakeSleepWake sleepWake;
    FakeNetworkWatch networkWatch;
    SettingsStore settings{chosen(preferences), loginItem};
    NotifierStore notifier{settings, center, postSession};
    StatusStore store{settings, notifier, provider, clock, sleepWake, networkWatch, clock.wallClock()};
};

/// One round of checks and one message on each channel, at the same time.
struct Round
{
    explicit Round(Program &program)
        : checks(program.store.checkAll())
        , slack(program.notifier.postSlack(u"text"_s, u"https://hooks.slack.com/services/T/B/x"_s))
        , telegram(program.notifier.postTelegram(u"text"_s, u"1:token"_s, u"-2"_s))
    {
        QElapsedTimer timer;
        timer.start();
        QEventLoop loop;
        int running = 3;
        const auto end = [&](std::chrono::milliseconds &time) {
            return [&] {
                time = std::chrono::milliseconds(timer.elapsed());
                if (--running == 0) {
                    loop.quit();
                }
            };
        };
        QObject context;
        checks.then(&context, end(checkTime));
        slack.then(&context, [stop = end(postTime)](bool) { stop(); });
        telegram.then(&context, [stop = end(postTime)](bool) { stop(); });
        QTimer::singleShot(30s, &loop, &QEventLoop::quit);
        loop.exec();
        hasEnded = running == 0;
    }

    QFuture<void> checks;
    QFuture<bool> slack;
    QFuture<bool> telegram;
    std::chrono::milliseconds checkTime{0};
    std::chrono::milliseconds postTime{0};
    bool hasEnded = false;
};

QString toText(Reading reading)
{
    return reading == Reading::taken ? u"read"_s : u"no change"_s;
}

QString toText(Use use)
{
    return use == Use::yes ? u"usable"_s : u"not usable"_s;
}

QString toText(Delivery delivery)
{
    return delivery == Delivery::delivered ? u"delivered"_s : u"failed"_s;
}

QString toText(End end)
{
    switch (end) {
    case End::itself: return u"itself"_s;
    case End::idleTimeout: return u"time without progress"_s;
    case End::totalDeadline: return u"total time"_s;
    }
    Q_UNREACHABLE();
}

/// The alerts that an outcome must raise.
QStringList alertsOf(const Outcome &outcome)
{
    QStringList titles;
    if (outcome.page == Reading::taken) {
        titles << u"ChatGPT is down"_s << u"Claude is back"_s;
    }
    if (outcome.feed == Reading::taken) {
        titles << u"Gemini is back"_s;
    }
    if (outcome.probe == Use::yes) {
        titles << u"GitHub Copilot is back"_s;
    }
    titles.sort();
    return titles;
}

constexpr Outcome everything{Reading::taken, Reading::taken, Use::yes, Delivery::delivered};

/// What was measured of a fault.
struct Result
{
    Outcome outcome;
    std::chrono::milliseconds checks{0}; ///< the duration of the longest checks
    std::optional<double> memory = std::nullopt;
};

} // namespace

namespace kelvo {

/// Formats an outcome for the messages of Qt Test.
char *toString(const Outcome &outcome)
{
    const QStringList cells{toText(outcome.page), toText(outcome.feed), toText(outcome.probe), toText(outcome.post)};
    return qstrdup(qPrintable(cells.join(u", "_s)));
}

} // namespace kelvo

class FaultsTest : public QObject
{
    Q_OBJECT

public:
    /// Returns a Markdown table with a row for each fault that was tested.
    QByteArray table() const;

private Q_SLOTS:
    void fault_data();
    void fault();

private:
    void tryVariant(const Fault &fault, int variant, Result &result);

    Servers servers_;
    std::map<QByteArray, Result> results_;
};

void FaultsTest::fault_data()
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < faults().size(); ++i) {
        QTest::newRow(faults()[i].name) << static_cast<int>(i);
    }
}

void FaultsTest::fault()
{
    QFETCH(const int, index);
    const auto &fault = faults()[static_cast<std::size_t>(index)];
    Result result{.outcome = fault.outcome};
    for (int variant = 0; variant < fault.variants; ++variant) {
        tryVariant(fault, variant, result);
        if (QTest::currentTestFailed()) {
            qWarning("variant %d", variant);
            return;
        }
    }
    results_[fault.name] = result;
}

void FaultsTest::tryVariant(const Fault &fault, int variant, Result &result)
{
    const bool endsByTime = fault.end != End::itself;
    const auto &statusLimits = endsByTime ? shortStatusLimits : StatusProvider::limits;
    const auto &postLimits = endsByTime ? shortPostLimits : NotifierStore::limits;

    servers_.setGood(true);
    Program program(servers_.network(), statusLimits, postLimits);
    const auto health = [&](ServiceID id) { return program.store.status(id).health; };
    const auto isUp = [&](ServiceID id) { return health(id) == ServiceHealth::operational; };
    QTRY_VERIFY(std::ranges::all_of(services, [&](auto id) { return health(id) != ServiceHealth::unknown; }));
    for (const auto id : services) {
        QCOMPARE(isUp(id), isUpAtFirst(id));
    }
    program.center.notifications.clear();

    // The fault.
    servers_.setFaulty(fault, variant);
    const PeakMemory memory;
    const Round faulty(program);
    const auto growth = memory.growth();
    QVERIFY(faulty.hasEnded);
    QCOMPARE(isUp(ServiceID::claude), !isUp(ServiceID::chatgpt));
    QCOMPARE(faulty.slack.result(), faulty.telegram.result());
    const Outcome outcome{.page = isUp(ServiceID::claude) ? Reading::taken : Reading::none,
                          .feed = isUp(ServiceID::gemini) ? Reading::taken : Reading::none,
                          .probe = isUp(ServiceID::copilot) ? Use::yes : Use::no,
                          .post = faulty.slack.result() ? Delivery::delivered : Delivery::failed};
    QCOMPARE(outcome, fault.outcome);
    QCOMPARE(program.alerts(), alertsOf(outcome));
    for (const char *channel : {"hooks.slack.com", "api.telegram.org"}) {
        const auto &requests = servers_.server(channel).requests();
        QVERIFY(std::ranges::count(requests, "POST", &ReceivedRequest::method) <= 1);
    }
    result.checks = std::max(result.checks, faulty.checkTime);
    result.memory = growth ? std::optional(std::max(result.memory.value_or(0), *growth)) : std::nullopt;
    const std::chrono::milliseconds least = fault.end == End::idleTimeout ? shortStatusLimits.idleTimeout
        : fault.end == End::totalDeadline                                 ? shortStatusLimits.totalDeadline
                                                                          : 0ms;
    const auto most = endsByTime ? shortStatusLimits.totalDeadline + 2s : statusLimits.idleTimeout;
    QVERIFY(faulty.checkTime >= least * 9 / 10);
    QVERIFY(faulty.checkTime <= most);
    QVERIFY(faulty.postTime <= most);
    QVERIFY(growth.value_or(0) <= memoryLimit || fault.isLimitedByTimeOnly);

    // The next answer without a fault.
    servers_.setGood(false);
    const Round good(program);
    QVERIFY(good.hasEnded);
    QVERIFY(good.slack.result());
    QVERIFY(good.telegram.result());
    for (const auto id : services) {
        QCOMPARE(isUp(id), !isUpAtFirst(id));
    }
    QCOMPARE(program.alerts(), alertsOf(everything));

    // Nothing remains.
    QTRY_COMPARE(servers_.connectionsOpen(), 0);
    QVERIFY(program.statusSession.children().isEmpty());
    QVERIFY(program.postSession.children().isEmpty());
}

QByteArray FaultsTest::table() const
{
    auto text = u"| The server … | Status page | Google’s feed | Probe | Slack, Telegram | Ended by | Memory |\n"
                "|---|---|---|---|---|---|---|\n"_s;
    for (const auto &fault : faults()) {
        const auto found = results_.find(fault.name);
        if (found == results_.end()) {
            continue;
        }
        const auto &[outcome, checks, memory] = found->second;
        const QStringList cells{QString::fromUtf8(fault.name),
                                toText(outcome.page),
                                toText(outcome.feed),
                                toText(outcome.probe),
                                toText(outcome.post),
                                toText(fault.end),
                                memory ? u"%1 MB"_s.arg(*memory, 0, 'f', 1) : u"not measured"_s};
        text += u"| "_s + cells.join(u" | "_s) + u" |\n"_s;
    }
    return text.toUtf8();
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    auto arguments = QCoreApplication::arguments();
    const auto document = takeWriteOption(arguments);
    FaultsTest test;
    const int failures = QTest::qExec(&test, arguments);
    if (!document.isEmpty()) {
        writeResultTable(document, "./dev faults", test.table());
    }
    return failures;
}

#include "tst_faults.moc"
