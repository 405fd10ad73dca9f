#include "platform/linux/IniPreferences.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <functional>
#include <optional>
#include <vector>

#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

using Step = std::function<void(IniPreferences &)>;

/// A run of a program that reads the settings file and then changes settings, one step after the other.
struct Run
{
    std::function<void(const QDir &)> prepare;
    std::vector<Step> steps;
    QString file = u"Kelvo/Kelvo.conf"_s; ///< the path at which the program finds the file
    QString target = file;                ///< the path of the file itself
};

const QString token = u"123456:secret-of-the-bot"_s;
const QByteArray before = "[General]\n"
                          "; mine\n"
                          "hasOnboarded=true\n"
                          "slackWebhookURL=https://hooks.slack.com/services/T0/B0/secret\n"
                          "telegramBotToken=1:old\n";

void place(const QString &path, const QByteArray &bytes, mode_t mode = 0600)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()
        || ::chmod(QFile::encodeName(path).constData(), mode) != 0)
        qFatal("cannot write %s", qPrintable(path));
}

/// Returns nullopt when there is no file.
std::optional<QByteArray> contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
}

Step set(const QString &key, const QString &value)
{
    return [=](IniPreferences &preferences) { preferences.setText(key, value); };
}

const std::vector<Step> twoChanges{set(u"telegramBotToken"_s, token), set(u"armedChannel"_s, u"telegram"_s)};

/// A system call by which the traced program tells how far it is. Nothing else in the run makes it.
constexpr long progress = SYS_getppid;

[[noreturn]] void runTraced(const Run &run, const QDir &home)
{
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::raise(SIGSTOP);
    IniPreferences preferences(home.filePath(run.file));
    ::syscall(progress);
    for (const auto &step : run.steps) {
        step(preferences);
        ::syscall(progress);
    }
    ::_exit(0);
}

struct Outcome
{
    bool isKilled = false; ///< false when the run had ended before
    int progress = 0;      ///< 1 when the file was read, and one more for each change that was reported as written
    quint64 call = 0;      ///< the number of the system call at which the run was killed
};

/// Runs in a child process and kills it at its `stop`th stop. Each system call stops twice, before and after it.
std::optional<Outcome> killAt(int stop, const Run &run, const QDir &home)
{
    const pid_t child = ::fork();
    if (child == 0)
        runTraced(run, home);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!WIFSTOPPED(status) || ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD) != 0)
        return std::nullopt;

    Outcome outcome;
    while (stop > 0) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        ::waitpid(child, &status, 0);
        if (WIFEXITED(status))
            return WEXITSTATUS(status) == 0 ? std::optional(outcome) : std::nullopt;
        if (!WIFSTOPPED(status) || WSTOPSIG(status) != (SIGTRAP | 0x80))
            return std::nullopt;
        __ptrace_syscall_info info{};
        ::ptrace(PTRACE_GET_SYSCALL_INFO, child, reinterpret_cast<void *>(sizeof info), &info);
        if (info.op == PTRACE_SYSCALL_INFO_ENTRY)
            outcome.call = info.entry.nr;
        else if (outcome.call == progress)
            ++outcome.progress;
        --stop;
    }
    outcome.isKilled = true;
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    return outcome;
}

/// A home in memory where there is such a directory, because each run waits several times for the disk.
QTemporaryDir makeHome()
{
    const QFileInfo memory(u"/dev/shm"_s);
    return QTemporaryDir((memory.isWritable() ? memory.filePath() : QDir::tempPath()) + u"/kelvo-XXXXXX"_s);
}

QStringList filesIn(const QString &directory)
{
    return QDir(directory).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

} // namespace

/// A process that is killed while it reads and writes the settings.
class KilledWriterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSettingsSurviveAKillAtEachSystemCall_data();
    void theSettingsSurviveAKillAtEachSystemCall();
};

void KilledWriterTest::theSettingsSurviveAKillAtEachSystemCall_data()
{
    QTest::addColumn<Run>("run");
    const auto file = u"Kelvo/Kelvo.conf"_s;
    QTest::newRow("first start") << Run{[](const QDir &) { }, twoChanges};
    QTest::newRow("a change") << Run{[=](const QDir &home) { place(home.filePath(file), before); }, twoChanges};
    QTest::newRow("made by hand") << Run{[=](const QDir &home) { place(home.filePath(file), before, 0644); },
                                         twoChanges};
    QTest::newRow("killed before") << Run{[=](const QDir &home) {
                                              place(home.filePath(file), before);
                                              place(home.filePath(file + u".unfinished"_s), before.first(70));
                                          },
                                          twoChanges};
    QTest::newRow("damaged") << Run{
        [=](const QDir &home) { place(home.filePath(file), before + "slackChannelLabel=\"x\n"); }, twoChanges};
    QTest::newRow("a link") << Run{[](const QDir &home) {
                                       place(home.filePath(u"dotfiles/kelvo"_s), before);
                                       QDir(home).mkdir(u"Kelvo"_s);
                                       QFile::link(home.filePath(u"dotfiles/kelvo"_s),
                                                   home.filePath(u"Kelvo/Kelvo.conf"_s));
                                   },
                                   twoChanges, file, u"dotfiles/kelvo"_s};
}

void KilledWriterTest::theSettingsSurviveAKillAtEachSystemCall()
{
    QFETCH(Run, run);

    // The complete states of the file that the run goes through.
    std::vector<std::optional<QByteArray>> states;
    {
        const auto directory = makeHome();
        const QDir home(directory.path());
        run.prepare(home);
        const auto target = home.filePath(run.target);
        states.push_back(contents(target));
        IniPreferences preferences(home.filePath(run.file));
        for (const auto &step : run.steps) {
            step(preferences);
            states.push_back(contents(target));
            QVERIFY(states.at(states.size() - 2) != states.back());
        }
    }

    bool isKilled = true;
    for (int stop = 1; isKilled; ++stop) {
        const auto directory = makeHome();
        const QDir home(directory.path());
        run.prepare(home);
        const auto outcome = killAt(stop, run, home);
        if (!outcome && stop == 1)
            QSKIP("this system does not let a process trace its child");
        QVERIFY(outcome);
        isKilled = outcome->isKilled;
        const auto where = u"stop %1, system call %2"_s.arg(stop).arg(outcome->call).toUtf8();

        const auto target = home.filePath(run.target);
        const auto folder = QFileInfo(target).path();
        const auto file = contents(target);
        const auto state = std::find(states.begin(), states.end(), file);
        QVERIFY2(state != states.end(), where + ": " + file.value_or("no file"));
        // A change that was reported as written is in the file.
        const auto index = static_cast<size_t>(state - states.begin());
        QVERIFY2(index + 1 >= static_cast<size_t>(outcome->progress), where);

        // Only a file that was made by hand can be read by others, until it has been read.
        for (const auto &name : filesIn(folder)) {
            const auto path = folder + u'/' + name;
            struct stat info{};
            QCOMPARE(::stat(QFile::encodeName(path).constData(), &info), 0);
            if (outcome->progress > 0 || path != target)
                QVERIFY2((info.st_mode & 077) == 0, where + ": " + name.toUtf8());
        }

        // The next start reads the settings, removes what was left, and can write.
        IniPreferences next(home.filePath(run.file));
        QVERIFY2(contents(target) == file, where);
        const auto left = filesIn(folder);
        QVERIFY2(left == (file ? QStringList{QFileInfo(target).fileName()} : QStringList()),
                 where + left.join(u' ').toUtf8());
        QCOMPARE(next.boolean(u"hasOnboarded"_s).has_value(), states.front().has_value());
        next.setInteger(u"checkInterval"_s, 60);
        QVERIFY2(contents(target).value_or(QByteArray()).contains("\ncheckInterval=60\n"), where);
        if (!isKilled)
            QVERIFY2(stop > 20 && index + 1 == states.size(), where);
    }
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::KilledWriterTest)
#include "tst_killedwriter.moc"
