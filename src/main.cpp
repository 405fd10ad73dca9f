#include "Program.h"
#include "menubar/ViewsLoader.h"
#include "platform/ProcessMemory.h"
#include "platform/SingleInstance.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    using namespace kelvo;

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
