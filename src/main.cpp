#include "Composition.h"
#include "Version.h"
#include "menubar/KelvoApp.h"
#include "platform/Platform.h"
#include "platform/SingleInstance.h"
#include "platform/TerminationSignals.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    using namespace Qt::StringLiterals;
    using namespace kelvo;

    QApplication application(argc, argv);
    QApplication::setOrganizationName(u"Kelvo"_s);
    QApplication::setOrganizationDomain(u"kelvo.app"_s);
    QApplication::setApplicationName(u"Kelvo"_s);
    QApplication::setApplicationVersion(QLatin1StringView(version));
    QApplication::setDesktopFileName(u"app.kelvo.Kelvo"_s);
    QApplication::setQuitOnLastWindowClosed(false);
    quitOnTerminationSignals(application);

    const auto instance = makeSingleInstance();
    if (!instance->acquire()) {
        return 0;
    }

    Composition composition(makeBoundaries());
    auto &platform = composition.platform();
    KelvoApp kelvo(StatusStore::shared(), SettingsStore::shared(), *platform.appearance, *platform.statusItem);
    return QApplication::exec();
}
