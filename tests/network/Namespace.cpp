#include "Namespace.h"

#include "Defect.h"

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// Opens the namespace of the calling thread.
int openOwn()
{
    const int descriptor = ::open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        throw Defect{u"/proc/thread-self/ns/net: "_s + QString::fromLocal8Bit(std::strerror(errno))};
    }
    return descriptor;
}

} // namespace

Namespace Namespace::current()
{
    return Namespace(openOwn());
}

Namespace Namespace::make()
{
    const Namespace before = current();
    if (::unshare(CLONE_NEWNET) != 0) {
        throw Defect{u"no new network namespace: "_s + QString::fromLocal8Bit(std::strerror(errno))};
    }
    Namespace made(openOwn());
    if (::setns(before.descriptor_, CLONE_NEWNET) != 0) {
        throw Defect{u"no way back to the first network namespace: "_s + QString::fromLocal8Bit(std::strerror(errno))};
    }
    made.run(u"ip link set lo up"_s);
    return made;
}

Namespace::Namespace(int descriptor)
    : descriptor_(descriptor)
{
}

Namespace::Namespace(Namespace &&other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1))
{
}

Namespace::~Namespace()
{
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

void Namespace::adopt(QProcess &process) const
{
    process.setChildProcessModifier([descriptor = descriptor_] {
        if (::setns(descriptor, CLONE_NEWNET) != 0) {
            ::_exit(126);
        }
    });
}

void Namespace::run(const QString &command, const QByteArray &input) const
{
    QProcess process;
    adopt(process);
    process.setProcessChannelMode(QProcess::MergedChannels);
    auto words = QProcess::splitCommand(command);
    const auto program = words.takeFirst();
    process.start(program, words);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        throw Defect{command + u": "_s + QString::fromUtf8(process.readAll().trimmed())};
    }
}

QByteArray Namespace::ask(const QString &command) const
{
    QProcess process;
    adopt(process);
    process.startCommand(command);
    process.waitForFinished();
    return process.readAllStandardOutput();
}

} // namespace kelvo
