#include "Program.h"

#include "Version.h"
#include "menubar/AppIcon.h"
#include "platform/TerminationSignals.h"

#include <QApplication>
#include <QLoggingCategory>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

Boundaries withFirstRing(Boundaries boundaries)
{
    KelvoApp::showFirstRing(*boundaries.platform.statusItem, *boundaries.platform.appearance);
    return boundaries;
}

} // namespace

void prepareProcess()
{
    // Qt 6.8 warns when there is no session bus.
    QLoggingCategory::setFilterRules(u"qt.qpa.theme.dbus.warning=false"_s);
}

void prepareApplication(QApplication &application)
{
    QApplication::setOrganizationName(u"Kelvo"_s);
    QApplication::setOrganizationDomain(u"kelvo.app"_s);
    QApplication::setApplicationName(u"Kelvo"_s);
    QApplication::setApplicationVersion(QLatin1StringView(version));
    QApplication::setDesktopFileName(u"app.kelvo.Kelvo"_s);
    QApplication::setWindowIcon(AppIcon::image());
    QApplication::setQuitOnLastWindowClosed(false);
    quitOnTerminationSignals(application);
}

Program::Program(Boundaries boundaries, ViewsFactory makeViews)
    : composition_(withFirstRing(std::move(boundaries)))
    , app_(StatusStore::shared(), SettingsStore::shared(), NotifierStore::shared(), composition_.platform(), makeViews)
{
}

} // namespace kelvo
