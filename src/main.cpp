#include "Program.h"
#include "http/RouteFinder.h"
#include "menubar/ViewsLoader.h"
#include "platform/ProcessMemory.h"
#include "platform/SingleInstance.h"

#include <QApplication>

#include <cstdlib>

namespace kelvo {
namespace {

int run(int argc, char *argv[])
{
    keepProcessMemorySmall();
    QApplication application(argc, argv);
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
