#include "CommandLine.h"
#include "Program.h"
#include "http/RouteFinder.h"
#include "menubar/ViewsLoader.h"
#include "platform/ProcessMemory.h"
#include "platform/SingleInstance.h"
#include "platform/WindowSystem.h"

#include <QApplication>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <optional>

#ifdef __SANITIZE_ADDRESS__
#include <chrono>
#include <thread>

#include <sanitizer/lsan_interface.h>
#endif
#ifdef KELVO_COVERAGE
extern "C" {
#include <gcov.h>
}
#endif

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

int print(const CommandLineAnswer &answer)
{
    std::fprintf(answer.exitCode == 0 ? stdout : stderr, "%s\n", qPrintable(answer.line));
    return answer.exitCode;
}

QStringList argumentsAfterName(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QFile::decodeName(argv[i]));
    }
    return arguments;
}

int run(int argc, char *argv[])
{
    // Before the application is made, because that needs a display.
    if (const auto answer = commandLineAnswer(argumentsAfterName(argc, argv))) {
        return print(*answer);
    }
    keepProcessMemorySmall();
    keepProcessMemoryPrivate();
    prepareProcess();
    auto windowSystem = std::make_optional<WindowSystem::Choice>();
    QApplication application(argc, argv);
    windowSystem.reset();
    prepareApplication(application);
    // At login, the entry in the autostart directory starts the program, or nothing does. A session manager that restores an
    // old session would start a second one.
    if (application.isSessionRestored()) {
        return 0;
    }

    const auto instance = makeSingleInstance();
    switch (instance->acquire()) {
    case SingleInstance::Outcome::acquired: break;
    case SingleInstance::Outcome::handedOver: return 0;
    case SingleInstance::Outcome::noAnswer: return print({u"Kelvo is already running but does not answer."_s, 1});
    }

    findViews();
    Program program(makeBoundaries(), &loadViews);
    QObject::connect(instance.get(), &SingleInstance::activationRequested, &program.app(), [&] { program.activate(); });
    return QApplication::exec();
}

/// Ends the process without destroying static objects. Instrumented builds report now what they report at a usual end.
[[noreturn]] void endAtOnce(int status)
{
#ifdef __SANITIZE_ADDRESS__
    // LeakSanitizer sometimes fails when a thread ends during its check, so the threads that are ending get this time.
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    __lsan_do_leak_check();
#endif
#ifdef KELVO_COVERAGE
    __gcov_dump();
#endif
    std::_Exit(status);
}

} // namespace
} // namespace kelvo

int main(int argc, char *argv[])
{
    const int status = kelvo::run(argc, argv);
    if (kelvo::RouteFinder::mayHaveLeftThreadsBehind()) {
        kelvo::endAtOnce(status);
    }
    return status;
}
