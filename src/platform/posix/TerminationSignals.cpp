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

// A signal handler may do next to nothing, but it may write to a pipe: the event loop reads the other end.
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
    // Whoever started us (nohup, a shell's background job) may have asked to ignore it.
    if (current.sa_handler == SIG_IGN)
        return;

    struct sigaction action = {};
    action.sa_handler = tellEventLoop;
    // The second of a kind ends the process the hard way, should the event loop no longer turn.
    action.sa_flags = SA_RESTART | SA_RESETHAND;
    sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
}

} // namespace

void quitOnTerminationSignals(QCoreApplication &application)
{
    std::array<int, 2> ends{};
    // Without a pipe the signals keep their own way of ending the process.
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
        // Not quit(), which asks the windows first, and any of them may say no.
        QCoreApplication::exit();
    });

    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        handle(signal);
}

} // namespace kelvo
