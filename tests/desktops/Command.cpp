#include "Command.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <csignal>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    constexpr int atMost = 20'000;
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(atMost) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        qWarning("%s failed", qUtf8Printable(program));
        return {};
    }
    return process.readAllStandardOutput();
}

/// Every process of a session has its runtime directory in the environment.
void killInSession(const QString &name)
{
    const auto session = "XDG_RUNTIME_DIR=" + qgetenv("XDG_RUNTIME_DIR");
    const QDir processes(u"/proc"_s);
    for (const auto &process : processes.entryList({u"[0-9]*"_s}, QDir::Dirs)) {
        const auto folder = processes.filePath(process);
        // The kernel cuts names off after 15 bytes.
        if (contentOf(folder + u"/comm"_s).trimmed() == name.toUtf8().left(15)
            && contentOf(folder + u"/environ"_s).split('\0').contains(session)) {
            ::kill(process.toInt(), SIGKILL);
        }
    }
}

} // namespace kelvo
