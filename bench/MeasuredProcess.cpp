#include "MeasuredProcess.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <ctime>
#include <filesystem>
#include <system_error>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString folderOf(qint64 processId)
{
    return u"/proc/%1"_s.arg(processId);
}

QDir descriptorFolderOf(qint64 processId)
{
    QDir folder(folderOf(processId) + "/fd"_L1);
    folder.setFilter(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System);
    return folder;
}

/// Returns the number after `label` in lines of the form "label: number unit"; 0 when no line starts with it.
long long numberAfter(const QByteArray &content, QByteArrayView label)
{
    for (const auto &line : content.split('\n')) {
        if (line.startsWith(label)) {
            return line.mid(label.size()).simplified().split(' ').value(0).toLongLong();
        }
    }
    return 0;
}

template<typename PerThread>
long long sumOverThreads(qint64 processId, PerThread perThread)
{
    const QDir tasks(folderOf(processId) + "/task"_L1);
    long long sum = 0;
    for (const auto &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        sum += perThread(tasks.filePath(task));
    }
    return sum;
}

} // namespace

Memory memoryOf(qint64 processId)
{
    const auto rollup = contentOf(folderOf(processId) + "/smaps_rollup"_L1);
    const auto megabytes = [&rollup](QByteArrayView label) {
        return static_cast<double>(numberAfter(rollup, label)) / 1024;
    };
    return {megabytes("Rss:"), megabytes("Pss:"), megabytes("Private_Clean:") + megabytes("Private_Dirty:"),
            megabytes("Anonymous:")};
}

std::chrono::nanoseconds cpuTimeOf(qint64 processId)
{
    // The clock of the process counts the threads that have ended too: each round has its own.
    clockid_t clock{};
    timespec time{};
    if (::clock_getcpuclockid(static_cast<pid_t>(processId), &clock) != 0 || ::clock_gettime(clock, &time) != 0) {
        qFatal("The processor time of process %lld cannot be read", processId);
    }
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

long long wakeupsOf(qint64 processId)
{
    return sumOverThreads(processId, [](const QString &task) {
        const auto status = contentOf(task + "/status"_L1);
        return numberAfter(status, "voluntary_ctxt_switches:");
    });
}

int descriptorsOf(qint64 processId)
{
    return static_cast<int>(descriptorFolderOf(processId).count());
}

int threadsOf(qint64 processId)
{
    return static_cast<int>(numberAfter(contentOf(folderOf(processId) + "/status"_L1), "Threads:"));
}

QMap<QString, long long> anonymousMemoryByMapping(qint64 processId)
{
    // The first line of a mapping is "from-to permissions offset device inode name"; lines of "Label: number kB" follow.
    static const QRegularExpression head(u"^[0-9a-f]+-[0-9a-f]+ \\S+ \\S+ \\S+ \\d+ *(.*)$"_s);
    QMap<QString, long long> kilobytes;
    QString mapping;
    for (const auto &line : contentOf(folderOf(processId) + "/smaps"_L1).split('\n')) {
        if (const auto found = head.match(QString::fromLocal8Bit(line)); found.hasMatch()) {
            mapping = found.captured(1).isEmpty() ? u"[anonymous]"_s : found.captured(1);
        }
        kilobytes[mapping] += numberAfter(line, "Anonymous:");
    }
    return kilobytes;
}

QMap<QString, int> descriptorsByName(qint64 processId)
{
    static const QRegularExpression number(u":\\[\\d+\\]$"_s);
    QMap<QString, int> counts;
    for (const auto &entry : descriptorFolderOf(processId).entryInfoList()) {
        // QFile would take "socket:[123]" for a relative path.
        std::error_code error;
        const auto target = std::filesystem::read_symlink(entry.filesystemFilePath(), error);
        ++counts[QString::fromStdString(target.string()).remove(number)];
    }
    return counts;
}

} // namespace kelvo
