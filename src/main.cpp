#include "Composition.h"
#include "Version.h"
#include "menubar/AppIcon.h"
#include "menubar/KelvoApp.h"
#include "menubar/ViewsLoader.h"
#include "platform/Platform.h"
#include "platform/ProcessMemory.h"
#include "platform/SingleInstance.h"
#include "platform/TerminationSignals.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    using namespace Qt::StringLiterals;
    using namespace kelvo;

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
