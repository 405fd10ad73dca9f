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

namespace kelvo {
namespace {

int print(const CommandLineAnswer &answer)
{
    std::fprintf(answer.exitCode == 0 ? stdout : stderr, "%s\n", qPrintable(answer.line));
    return answer.exitCode;
}

/// Answers --version and --help without a display. Other arguments may be Qt options, which QApplication removes.
std::optional<CommandLineAnswer> answerWithoutDisplay(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QFile::decodeName(argv[i]));
    }
    auto answer = commandLineAnswer(arguments);
    return answer && answer->exitCode == 0 ? answer : std::nullopt;
}

int run(int argc, char *argv[])
{
    if (const auto answer = answerWithoutDisplay(argc, argv)) {
        return print(*answer);
    }
    keepProcessMemorySmall();
    prepareProcess();
    auto windowSystem = std::make_optional<WindowSystem::Choice>();
    QApplication application(argc, argv);
    windowSystem.reset();
    if (const auto answer = commandLineAnswer(QApplication::arguments().sliced(1))) {
        return print(*answer);
    }
    prepareApplication(application);

    const auto instance = makeSingleInstance();
    if (!instance->acquire()) {
        return 0;
    }

    Program program(makeBoundaries(), &loadViews);
    QObject::connect(instance.get(), &SingleInstance::activationRequested, &program.app(), &KelvoApp::openPopover);
    return QApplication::exec();
}

} // namespace
} // namespace kelvo

int main(int argc, char *argv[])
{
    const int status = kelvo::run(argc, argv);
    if (kelvo::RouteFinder::hasLeftThreadsBehind()) {
        std::_Exit(status);
    }
    return status;
}
