#include "Situation.h"

#include "support/ResultTable.h"
#include "support/VirtualDisplay.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTest>

#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <deque>
#include <map>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

/// The exit code that CTest reports as "skipped".
constexpr int skipped = 77;

// ---- The child process: one situation in its own namespaces ----

/// Mounts `source` over `target`, visible only to the processes of this situation.
void replace(const QString &target, const QString &source)
{
    const auto place = QFileInfo(target).canonicalFilePath();
    if (place.isEmpty()) {
        throw Defect{target + u" is not there"_s};
    }
    Namespace::current().run(u"mount --bind %1 %2"_s.arg(source, place));
}

QString textFile(const QTemporaryDir &directory, const QString &name, const QByteArray &content)
{
    QFile file(directory.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        throw Defect{u"cannot write "_s + name};
    }
    return file.fileName();
}

const Situation &situationCalled(const QByteArray &name)
{
    const auto found = std::ranges::find_if(situations(), [&](const Situation &s) { return s.name == name; });
    if (found == situations().end()) {
        qFatal("no situation %s", name.constData());
    }
    return *found;
}

/// Runs a situation and prints the measured value, "nothing" or the defect.
int runSituation(const QByteArray &name)
{
    try {
        const auto &situation = situationCalled(name);
        const QTemporaryDir directory;
        World world;
        replace(u"/etc/ssl/certs"_s, world.servers.trusted());
        replace(u"/etc/resolv.conf"_s, world.servers.resolverFile());
        replace(u"/etc/nsswitch.conf"_s, textFile(directory, u"nsswitch.conf"_s, "hosts: files dns\n"));
        const auto figure = situation.run(world, situation.limit);
        std::printf("%s\n", figure ? QByteArray::number(*figure).constData() : "nothing");
        return 0;
    } catch (const Defect &defect) {
        std::printf("%s\n", qPrintable(defect.text));
        return 1;
    }
}

// ---- The parent process ----

/// Returns the command that runs another one in its own namespaces. All its descendants are killed when it ends.
QStringList isolated(const QStringList &command)
{
    QStringList words{u"unshare"_s, u"--net"_s,        u"--mount"_s,     u"--pid"_s,
                      u"--fork"_s,  u"--kill-child"_s, u"--mount-proc"_s};
    if (::geteuid() != 0) {
        words += {u"--user"_s, u"--map-root-user"_s};
    }
    return words + command;
}

QStringList missingPrograms()
{
    QStringList missing;
    for (const auto *tool : {"dnsmasq", "haproxy", "ip", "nft", "nginx", "openssl", "ss", "tc", "tinyproxy", "Xvfb"}) {
        if (QStandardPaths::findExecutable(QLatin1StringView(tool)).isEmpty()) {
            missing.append(QLatin1StringView(tool));
        }
    }
    return missing;
}

/// Returns why the situations cannot be set up on this machine; empty when they can.
QString hindrance()
{
    QProcess trial;
    trial.setProcessChannelMode(QProcess::MergedChannels);
    const auto words = isolated({u"sh"_s, u"-ec"_s,
                                 u"ip link add one type veth peer name two\n"
                                 "nft add table inet one\n"
                                 "unshare --net true\n"
                                 "mount --bind /etc/hosts /etc/resolv.conf\n"_s});
    trial.start(words.first(), words.mid(1));
    trial.waitForFinished();
    const bool works = trial.exitStatus() == QProcess::NormalExit && trial.exitCode() == 0;
    return works ? QString()
                 : u"the kernel allows no network namespaces here: "_s + QString::fromUtf8(trial.readAll().trimmed());
}

QString withUnit(double value, Unit unit)
{
    switch (unit) {
    case Unit::seconds: return u"%1 s"_s.arg(value, 0, 'f', 1);
    case Unit::milliseconds: return u"%1 ms"_s.arg(value, 0, 'f', 0);
    case Unit::megabytes: return u"%1 MB"_s.arg(value, 0, 'f', 0);
    case Unit::count: return QString::number(value);
    }
    Q_UNREACHABLE();
}

QString toText(const Limit &limit)
{
    return limit.exactly ? withUnit(limit.value, limit.unit) : u"at most "_s + withUnit(limit.value, limit.unit);
}

bool keeps(double figure, const Limit &limit)
{
    return limit.exactly ? figure == limit.value : figure <= limit.value;
}

} // namespace

/// Runs the situations, several at a time, because they mostly wait.
class NetworkTest : public QObject
{
    Q_OBJECT

public:
    /// Runs the situations with these names, or all when `names` is empty.
    explicit NetworkTest(const QStringList &names);

    /// Returns a Markdown table with a row for each situation that was run.
    QByteArray table() const;

private Q_SLOTS:
    void initTestCase();
    void situation_data();
    void situation();
    void cleanupTestCase();

private:
    void startNext();
    void startOne(const QByteArray &name);

    QStringList names_;
    QTemporaryDir directory_;
    std::deque<QByteArray> waiting_;
    std::map<QByteArray, std::unique_ptr<VirtualDisplay>>
        displays_; ///< one for each situation, because a popover would take the focus of another one
    std::map<QByteArray, std::unique_ptr<QProcess>> processes_;
    std::map<QByteArray, QString> results_;
};

NetworkTest::NetworkTest(const QStringList &names)
    : names_(names)
{
}

void NetworkTest::initTestCase()
{
    for (const auto &situation : situations()) {
        if (names_.isEmpty() || names_.contains(QLatin1StringView(situation.name))) {
            waiting_.emplace_back(situation.name);
        }
    }
    const auto atATime = 4 * std::max(2U, std::thread::hardware_concurrency());
    for (unsigned started = 0; started < atATime; ++started) {
        startNext();
    }
}

void NetworkTest::startNext()
{
    if (!waiting_.empty()) {
        const auto name = waiting_.front();
        waiting_.pop_front();
        startOne(name);
    }
}

void NetworkTest::startOne(const QByteArray &name)
{
    const auto &display = displays_[name] = std::make_unique<VirtualDisplay>();
    auto &process = processes_[name];
    process = std::make_unique<QProcess>();
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, display->name());
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"TMPDIR"_s, directory_.path());
    process->setProcessEnvironment(environment);
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // Kill the child process when the test ends.
    process->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    connect(process.get(), &QProcess::finished, this, [this, name] {
        displays_.erase(name);
        startNext();
    });
    const auto words = isolated({QCoreApplication::applicationFilePath(), u"--situation"_s, QString::fromUtf8(name)});
    process->start(words.first(), words.mid(1));
}

void NetworkTest::situation_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const auto &situation : situations()) {
        QTest::newRow(situation.name) << QByteArray(situation.name);
    }
}

void NetworkTest::situation()
{
    QFETCH(QByteArray, name);
    const auto &limit = situationCalled(name).limit;
    const auto hasEnded = [&] {
        const auto found = processes_.find(name);
        return found != processes_.end() && found->second->state() == QProcess::NotRunning;
    };
    QVERIFY(QTest::qWaitFor(hasEnded, 300'000));
    auto &process = *processes_.at(name);
    const auto said = process.readAllStandardOutput().trimmed();
    bool isFigure = false;
    const double figure = said.toDouble(&isFigure);
    results_[name] = isFigure ? withUnit(figure, limit.unit)
        : said == "nothing"   ? u"not within "_s + withUnit(limit.value, limit.unit)
                              : QString::fromUtf8(said);
    QVERIFY2(isFigure && keeps(figure, limit), qPrintable(results_[name] + u"; limit: "_s + toText(limit)));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
}

void NetworkTest::cleanupTestCase()
{
    std::printf("%s", table().constData());
    std::fflush(stdout);
}

QByteArray NetworkTest::table() const
{
    auto text = u"| Situation | What Kelvo does | Limit | Measured |\n|---|---|---|---|\n"_s;
    for (const auto &situation : situations()) {
        if (const auto result = results_.find(situation.name); result != results_.end()) {
            text += u"| %1 | %2 | %3 | %4 |\n"_s.arg(QString::fromUtf8(situation.what),
                                                     QString::fromUtf8(situation.happens), toText(situation.limit),
                                                     result->second);
        }
    }
    return text.toUtf8();
}

} // namespace kelvo

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    auto arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--situation"_L1) {
        return kelvo::runSituation(arguments.value(2).toUtf8());
    }
    // Servers and network tools are in these directories, which are not in every user's PATH.
    qputenv("PATH", qgetenv("PATH") + ":/usr/sbin:/sbin");
    if (const auto missing = kelvo::missingPrograms(); !missing.isEmpty()) {
        std::printf("FAILED, these programs are missing: %s\n", qPrintable(missing.join(u", "_s)));
        return EXIT_FAILURE;
    }
    if (const auto hindrance = kelvo::hindrance(); !hindrance.isEmpty()) {
        std::printf("SKIPPED, nothing was tested on a network: %s\n", qPrintable(hindrance));
        return kelvo::skipped;
    }
    QStringList names;
    for (const auto &argument : arguments) {
        if (argument.startsWith("situation:"_L1)) {
            names.append(argument.section(u':', 1));
        }
    }
    const auto document = kelvo::takeWriteOption(arguments);
    kelvo::NetworkTest test(names);
    const int failures = std::min(QTest::qExec(&test, arguments), kelvo::skipped - 1);
    if (!document.isEmpty()) {
        kelvo::writeResultTable(document, "./dev network", test.table());
    }
    return failures;
}

#include "tst_network.moc"
