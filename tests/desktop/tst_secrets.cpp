#include "KelvoProcess.h"

#include "support/FakeLogind.h"
#include "support/PrivateBus.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <csignal>

#include <sys/resource.h>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

const auto secret = u"T0B0/a-secret-that-nobody-else-may-see"_s;

bool contains(const QByteArray &bytes, const QString &text)
{
    const auto utf16 = QByteArray::fromRawData(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    return bytes.contains(text.toUtf8()) || bytes.contains(utf16);
}

/// Records all messages on a bus, as text.
class BusRecorder
{
public:
    explicit BusRecorder(const QStringList &bus)
    {
        process_.start(u"dbus-monitor"_s, bus);
        // Its first words are about its own name. From then on it sees every message.
        if (!process_.waitForReadyRead(20'000)) {
            qFatal("dbus-monitor does not start");
        }
    }
    ~BusRecorder()
    {
        process_.kill();
        process_.waitForFinished();
    }

    const QByteArray &heard()
    {
        heard_ += process_.readAll();
        return heard_;
    }

private:
    QProcess process_;
    QByteArray heard_;
};

/// All parts of a request in one text.
QByteArray wholeText(const SimulatedRequest &request)
{
    auto text = request.method + ' ' + request.host.toUtf8() + request.path;
    for (const auto &header : request.headers) {
        text += '\n' + header.name + ": " + header.value;
    }
    return text + '\n' + request.body;
}

} // namespace

/// What the program does with the address of a webhook and the token of a bot.
class SecretsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void onlyTheChannelLearnsTheSecret_data();
    void onlyTheChannelLearnsTheSecret();
    void aLogWithEveryCategoryDoesNotContainTheSecret();
    void aCrashLeavesNoCoreFile_data();
    void aCrashLeavesNoCoreFile();
    void aCoreFileThatIsForcedHasNoMemoryInIt();

private:
    void start(const QByteArray &channel);
    /// Starts the program in an empty directory in which any process may leave a core file. Returns false when this system
    /// puts core files elsewhere.
    bool startWhereCoresAreLeft(const QTemporaryDir &directory);

    std::unique_ptr<SimulatedInternet> internet_;
    std::unique_ptr<PrivateBus> systemBus_;
    std::unique_ptr<FakeLogind> logind_;
    std::unique_ptr<KelvoProcess> kelvo_;
};

void SecretsTest::init()
{
    internet_ = std::make_unique<SimulatedInternet>();
    systemBus_ = std::make_unique<PrivateBus>();
    systemBus_->start();
    logind_ = std::make_unique<FakeLogind>(*systemBus_);
    kelvo_ = std::make_unique<KelvoProcess>(*internet_);
    kelvo_->setEnvironment(u"DBUS_SYSTEM_BUS_ADDRESS"_s, systemBus_->address());
}

void SecretsTest::cleanup()
{
    QDir::setCurrent(QDir::tempPath());
    kelvo_.reset();
    logind_.reset();
    systemBus_.reset();
    internet_.reset();
}

void SecretsTest::start(const QByteArray &channel)
{
    kelvo_->writeSettings("[General]\nhasOnboarded=true\noutageAlertsEnabled=true\n"
                          "armedChannel="
                          + channel
                          + "\n"
                            "slackWebhookURL=https://hooks.slack.com/services/"
                          + secret.toUtf8()
                          + "\n"
                            "telegramChatID=-100200\n"
                            "telegramBotToken="
                          + secret.toUtf8() + "\n");
    kelvo_->start();
}

void SecretsTest::onlyTheChannelLearnsTheSecret_data()
{
    QTest::addColumn<QByteArray>("channel");
    QTest::addColumn<QString>("host");
    QTest::addColumn<std::optional<SimulatedResponse>>("response");
    using Response = SimulatedResponse;
    for (const auto &[channel, host] :
         {std::pair("slack"_ba, u"hooks.slack.com"_s), std::pair("telegram"_ba, u"api.telegram.org"_s)}) {
        const auto row = [&, name = channel, to = host](const char *fault, const std::optional<Response> &response) {
            QTest::addRow("%s, %s", name.constData(), fault) << name << to << response;
        };
        row("success", Response::ofStatus(200));
        row("refused", Response::ofStatus(403));
        row("an error page", Response::html("<html><title>Oops</title></html>", 500));
        row("redirected", Response::redirect("https://claude.ai/elsewhere"));
        row("redirected as a post", Response::redirect("https://claude.ai/elsewhere", 307));
        row("broken off", Response::closeAtOnce());
        row("unreachable", std::nullopt);
    }
}

void SecretsTest::onlyTheChannelLearnsTheSecret()
{
    QFETCH(QByteArray, channel);
    QFETCH(QString, host);
    QFETCH(std::optional<SimulatedResponse>, response);
    if (response) {
        internet_->respond(host, {}, *response);
    } else {
        internet_->setUnreachable(host);
    }
    internet_->setComponent(StatusPage::Claude, u"claude.ai"_s, u"major_outage"_s);

    BusRecorder session({u"--session"_s});
    BusRecorder system({u"--address"_s, systemBus_->address()});
    start(channel);
    QTRY_VERIFY(session.heard().contains("\"Claude is down\""));
    if (response) {
        QTRY_VERIFY(!internet_->requestsTo(host).isEmpty());
    }
    // A round later, whatever the program does about the failure it has done.
    const auto checks = internet_->requestsTo(u"status.claude.com"_s).size();
    QTRY_VERIFY((logind_->prepareForSleep(true), logind_->prepareForSleep(false), QTest::qWait(500),
                 internet_->requestsTo(u"status.claude.com"_s).size() > checks));

    for (const auto &request : internet_->requests()) {
        QVERIFY2(request.host == host || !contains(wholeText(request), secret), wholeText(request));
        QCOMPARE(request.scheme, u"https"_s);
    }
    QCOMPARE(internet_->requestsTo(host).size(), response ? 1 : 0);
    QVERIFY(!contains(session.heard(), secret));
    QVERIFY(!contains(system.heard(), secret));
    kelvo_->endInSilence();
}

// As a user may set it to look for a defect, or to send the log to somebody.
void SecretsTest::aLogWithEveryCategoryDoesNotContainTheSecret()
{
    kelvo_->setEnvironment(u"QT_LOGGING_RULES"_s, u"*=true"_s);
    internet_->setComponent(StatusPage::Claude, u"claude.ai"_s, u"major_outage"_s);
    internet_->setUnreachable(u"api.telegram.org"_s);
    BusRecorder session({u"--session"_s});
    start("telegram"_ba);
    QTRY_VERIFY(session.heard().contains("\"Claude is down\""));
    QCOMPARE(kelvo_->stop(), 0);
    const auto log = kelvo_->output();
    QVERIFY(log.contains("qt."));
    QVERIFY2(!contains(log, secret), log.mid(log.indexOf(secret.toUtf8()) - 300, 600));
}

bool SecretsTest::startWhereCoresAreLeft(const QTemporaryDir &directory)
{
    rlimit limit{};
    ::getrlimit(RLIMIT_CORE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_CORE, &limit);
    QDir::setCurrent(directory.path());
    QProcess::execute(u"/bin/sh"_s, {u"-c"_s, u"kill -ABRT $$"_s});
    const auto cores = QDir(directory.path()).entryList(QDir::Files);
    for (const auto &core : cores) {
        QFile::remove(directory.filePath(core));
    }
    start("telegram"_ba);
    return !cores.isEmpty();
}

void SecretsTest::aCrashLeavesNoCoreFile_data()
{
    QTest::addColumn<int>("crash");
    QTest::newRow("SIGSEGV") << SIGSEGV;
    QTest::newRow("SIGABRT") << SIGABRT;
}

void SecretsTest::aCrashLeavesNoCoreFile()
{
    QFETCH(int, crash);
    const QTemporaryDir directory;
    if (!startWhereCoresAreLeft(directory)) {
        QSKIP("this system does not leave core files in the directory of the process");
    }
    QTRY_VERIFY(!internet_->requests().isEmpty());
    QVERIFY(kelvo_->stop(crash) != 0);
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files), QStringList());
}

void SecretsTest::aCoreFileThatIsForcedHasNoMemoryInIt()
{
    const QTemporaryDir directory;
    if (!startWhereCoresAreLeft(directory)) {
        QSKIP("this system does not leave core files in the directory of the process");
    }
    QTRY_VERIFY(!internet_->requests().isEmpty());
    const rlimit unlimited{RLIM_INFINITY, RLIM_INFINITY};
    if (::prlimit(static_cast<pid_t>(kelvo_->processId()), RLIMIT_CORE, &unlimited, nullptr) != 0) {
        QSKIP("the limit of another process cannot be raised here");
    }
    QCOMPARE(kelvo_->stop(SIGABRT), -1);
    const auto cores = QDir(directory.path()).entryList(QDir::Files);
    QCOMPARE(cores.size(), 1);
    QFile core(directory.filePath(cores.constFirst()));
    QVERIFY(core.open(QIODevice::ReadOnly));
    const auto memory = core.readAll();
    QVERIFY(memory.startsWith("\x7f"
                              "ELF"));
    QVERIFY(!contains(memory, secret));
}

} // namespace kelvo

QTEST_MAIN(kelvo::SecretsTest)
#include "tst_secrets.moc"
