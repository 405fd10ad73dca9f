#include "platform/TerminationSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace kelvo {

namespace {

// A signal handler may call only async-signal-safe functions. write() is one: the handler writes to this pipe, and the
// event loop reads the other end.
int pipeToEventLoop = -1;

extern "C" void tellEventLoop(int)
{
    const int error = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(pipeToEventLoop, &byte, 1);
    errno = error;
}

void handle(int signal)
{
    struct sigaction current = {};
    ::sigaction(signal, nullptr, &current);
    // The parent process (nohup, a shell that starts a background job) may have set the signal to be ignored.
    if (current.sa_handler == SIG_IGN)
        return;

    struct sigaction action = {};
    action.sa_handler = tellEventLoop;
    // SA_RESETHAND: a second signal kills the process even if the event loop is blocked.
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
}

} // namespace

void quitOnTerminationSignals(QCoreApplication &application)
{
    std::array<int, 2> ends{};
    // Without a pipe the signals keep their default action, which ends the process.
    if (::pipe(ends.data()) != 0)
        return;
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    pipeToEventLoop = ends[1];

    auto *notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, [notifier] {
        notifier->setEnabled(false);
        // Not quit(): it asks the windows first, and any of them can refuse.
        QCoreApplication::exit();
    });

    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        handle(signal);
}

} // namespace kelvo
