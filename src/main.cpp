#include "Composition.h"
#include "Version.h"
#include "http/RouteFinder.h"
#include "menubar/AppIcon.h"
#include "menubar/KelvoApp.h"
#include "menubar/ViewsLoader.h"
#include "platform/Platform.h"
#include "platform/ProcessMemory.h"
#include "platform/SingleInstance.h"
#include "platform/TerminationSignals.h"

#include <QApplication>

#include <cstdlib>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;

int run(int argc, char *argv[])
{
    keepProcessMemorySmall();
    QApplication application(argc, argv);
    QApplication::setOrganizationName(u"Kelvo"_s);
    QApplication::setOrganizationDomain(u"kelvo.app"_s);
    QApplication::setApplicationName(u"Kelvo"_s);
    QApplication::setApplicationVersion(QLatin1StringView(version));
    QApplication::setDesktopFileName(u"app.kelvo.Kelvo"_s);
    QApplication::setWindowIcon(AppIcon::image());
    QApplication::setQuitOnLastWindowClosed(false);
    quitOnTerminationSignals(application);

    const auto instance = makeSingleInstance();
    if (!instance->acquire()) {
        return 0;
    }

    auto boundaries = makeBoundaries();
    KelvoApp::showFirstRing(*boundaries.platform.statusItem, *boundaries.platform.appearance);
    Composition composition(std::move(boundaries));
    KelvoApp kelvo(StatusStore::shared(), SettingsStore::shared(), NotifierStore::shared(), composition.platform(),
                   &loadViews);
    QObject::connect(instance.get(), &SingleInstance::activationRequested, &kelvo, &KelvoApp::openPopover);
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
