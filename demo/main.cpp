#include "AcceleratedClock.h"
#include "DemoDesktop.h"
#include "Story.h"

#include "Program.h"
#include "platform/WindowSystem.h"
#include "simulator/ReroutedNetwork.h"
#include "simulator/SimulatedInternet.h"
#include "windows/QuickViews.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>

#include <optional>

using namespace Qt::StringLiterals;
using namespace kelvo;

namespace {

/// One minute of the program's waits passes in ten seconds.
constexpr int acceleration = 6;

/// The demonstration cannot be registered to start at login.
class NoLoginItem : public LoginItem
{
public:
    bool isEnabled() const override { return false; }
    bool registerItem() override { return false; }
    bool unregisterItem() override { return true; }
};

/// The settings of the demonstration: all eight services, checked every minute, with the onboarding completed.
std::unique_ptr<Preferences> demoProfile()
{
    auto profile = DemoDesktop::makePreferences();
    QStringList services;
    for (const auto &service : Service::catalog()) {
        services.append(rawValue(service.id));
    }
    profile->setBoolean(u"hasOnboarded"_s, true);
    profile->setBoolean(u"watchOnThisMac"_s, true);
    profile->setBoolean(u"outageAlertsEnabled"_s, false);
    profile->setTexts(u"serviceOrder"_s, services);
    profile->setTexts(u"enabledServices"_s, services);
    profile->setInteger(u"checkInterval"_s, rawValue(CheckInterval::oneMinute));
    return profile;
}

Boundaries simulatedBoundaries(const SimulatedInternet &internet)
{
    auto boundaries = makeBoundaries();
    boundaries.platform.clock = std::make_unique<AcceleratedClock>(std::move(boundaries.platform.clock), acceleration);
    boundaries.platform.loginItem = std::make_unique<NoLoginItem>();
    boundaries.platform.preferences = demoProfile();
    const auto makeManager = [&internet] { return std::make_unique<ReroutedNetwork>(internet); };
    boundaries.statusNetwork = {makeManager};
    boundaries.alertNetwork = {makeManager};
    return boundaries;
}

} // namespace

int main(int argc, char *argv[])
{
    prepareProcess();
    auto windowSystem = std::make_optional<WindowSystem::Choice>();
    QApplication application(argc, argv);
    windowSystem.reset();
    prepareApplication(application);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Shows in about one minute what Kelvo does, without internet: its eight vendors are played in this process."_s);
    parser.addHelpOption();
    const QCommandLineOption keep(u"keep"_s, u"Stay open after the story, to play with."_s);
    parser.addOption(keep);
    parser.process(application);

    SimulatedInternet internet;
    internet.setEndedIncidents(500);
    auto boundaries = simulatedBoundaries(internet);

    QTextStream out(stdout);
    const auto watch = DemoDesktop::makeNotificationWatch(boundaries.platform);
    if (!watch->start()) {
        out << "The demo needs to watch notifications, but " << watch->errorString() << "." << Qt::endl;
        return EXIT_FAILURE;
    }
    const auto pictures = DemoDesktop::makePictureFolder();
    if (pictures) {
        out << "Pictures of the desktop go to " << pictures->path() << Qt::endl;
    }
    Program program(std::move(boundaries), &QuickViews::make);

    Story story(internet, StatusStore::shared(), *watch, pictures);
    QObject::connect(&story, &Story::ended, &application, [&](const QString &complaint) {
        out << (complaint.isEmpty() ? u"Exactly one alert was sent: \"Claude is back. You can continue working.\""_s
                                    : complaint)
            << Qt::endl;
        if (!parser.isSet(keep)) {
            QApplication::exit(complaint.isEmpty() ? EXIT_SUCCESS : EXIT_FAILURE);
            return;
        }
        out << "Kelvo stays in the tray. Press Ctrl-C to end." << Qt::endl;
    });
    story.begin();
    return QApplication::exec();
}
