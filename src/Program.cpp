#include "Program.h"

#include "Version.h"
#include "menubar/AppIcon.h"
#include "platform/TerminationSignals.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QSessionManager>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

Boundaries withFirstRing(Boundaries boundaries)
{
    KelvoApp::showFirstRing(*boundaries.platform.statusItem, *boundaries.platform.appearance);
    return boundaries;
}

/// Asks session managers not to start the program in the next session. The user chooses that in the settings.
void neverRestart(QApplication &application)
{
    const auto hint = [](QSessionManager &manager) { manager.setRestartHint(QSessionManager::RestartNever); };
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &application, hint, Qt::DirectConnection);
    QObject::connect(&application, &QGuiApplication::saveStateRequest, &application, hint, Qt::DirectConnection);
}

} // namespace

void prepareProcess()
{
    // Qt 6.8 warns when there is no session bus.
    QLoggingCategory::setFilterRules(u"qt.qpa.theme.dbus.warning=false"_s);
    // On X11, Qt draws a change 5 ms after it was made, and a timer wakes the process for it. See
    // QPlatformWindow::requestUpdate().
    if (constexpr auto delay = "QT_QPA_UPDATE_IDLE_TIME"; !qEnvironmentVariableIsSet(delay)) {
        qputenv(delay, "0");
    }
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
    neverRestart(application);
}

Program::Program(Boundaries boundaries, ViewsFactory makeViews)
    : composition_(withFirstRing(std::move(boundaries)))
    , app_(StatusStore::shared(), SettingsStore::shared(), NotifierStore::shared(), composition_.platform(), makeViews)
{
    QObject::connect(composition_.platform().notificationCenter.get(), &NotificationCenter::activated, &app_,
                     &KelvoApp::openPopover);
}

void Program::activate()
{
    if (SettingsStore::shared().hasOnboarded()) {
        app_.openPopover();
    } else {
        app_.openOnboarding();
    }
}

} // namespace kelvo
