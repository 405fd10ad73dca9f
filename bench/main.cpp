#include "MeasuredProcess.h"
#include "ScreenColumn.h"
#include "StillDesktop.h"
#include "Table.h"
#include "TrayWatch.h"
#include "World.h"

#include "model/Service.h"
#include "support/FakeNotificationServer.h"
#include "support/PrivateBus.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCursor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <functional>
#include <thread>

using namespace Qt::StringLiterals;
using namespace kelvo;
using namespace std::chrono_literals;

namespace {

constexpr auto aRoundAtMost = 20s;

double milliseconds(std::chrono::nanoseconds duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

std::unique_ptr<ProxiedProcess> startBareRequests(World &world)
{
    QStringList addresses;
    for (const auto &service : Service::catalog()) {
        const auto *page = std::get_if<StatuspageSource>(&service.source);
        addresses.append(page ? page->base + "/api/v2/summary.json"_L1
                              : u"https://www.google.com/appsstatus/dashboard/incidents.json"_s);
    }
    auto program = std::make_unique<ProxiedProcess>(world.internet, QStringLiteral(BARE_REQUESTS), addresses);
    world.round([&] { program->start(); });
    return program;
}

// ---- Start to ring ----

/// Marks the onboarding as completed, so that its window is not part of the measured start.
void writeOnboarded(const QTemporaryDir &configuration)
{
    QDir(configuration.path()).mkdir(u"Kelvo"_s);
    QFile file(configuration.filePath(u"Kelvo/Kelvo.conf"_s));
    if (file.open(QIODevice::WriteOnly)) {
        file.write("[General]\nhasOnboarded=true\n");
    }
}

double startToRing(const QString &program)
{
    QTemporaryDir configuration;
    TrayWatch tray;
    QSignalSpy registered(&tray, &TrayWatch::registered);
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_CONFIG_HOME"_s, configuration.path());
    writeOnboarded(configuration);
    process.setProcessEnvironment(environment);
    QElapsedTimer elapsed;
    elapsed.start();
    process.start(program, QStringList());
    waitUntil("an icon in the tray", [&] { return !registered.isEmpty(); });
    const auto result = static_cast<double>(elapsed.nsecsElapsed()) / 1e6;
    process.terminate();
    process.waitForFinished();
    return result;
}

QList<Figure> measureStart()
{
    std::vector<double> kelvo;
    std::vector<double> bare;
    for (int run = 0; run < 15; ++run) {
        kelvo.push_back(startToRing(QStringLiteral(KELVO_PROGRAM)));
        bare.push_back(startToRing(QStringLiteral(BARE_TRAY)));
    }
    // clang-format off
    return {{u"Start to ring registered (median of 15)"_s, u"ms"_s, median(kelvo), u"bare tray icon"_s, median(bare),
             u"at most 1.15 x"_s}};
    // clang-format on
}

// ---- At rest ----

QList<Figure> measureRest()
{
    World world;
    const auto kelvo = startKelvo(world);
    const auto requests = startBareRequests(world);
    QProcess tray;
    tray.start(QStringLiteral(BARE_TRAY), QStringList());
    letPass(4s);

    const auto kelvoWakeups = wakeupsOf(kelvo->processId());
    const auto trayWakeups = wakeupsOf(tray.processId());
    letPass(20s);
    const auto kelvoMemory = memoryOf(kelvo->processId());
    const auto requestsMemory = memoryOf(requests->processId());
    const auto trayMemory = memoryOf(tray.processId());
    const auto wakeups = static_cast<double>(wakeupsOf(kelvo->processId()) - kelvoWakeups);
    const auto bareWakeups = static_cast<double>(wakeupsOf(tray.processId()) - trayWakeups);
    tray.terminate();
    tray.waitForFinished();
    const auto withTray = u"bare tray icon"_s;
    const auto withRequests = u"bare tray icon with eight GETs"_s;
    // clang-format off
    return {
        {u"Resident memory at rest"_s, u"MB"_s, kelvoMemory.residentMegabytes, withRequests,
         requestsMemory.residentMegabytes, u"at most 40 MB"_s},
        {u"  the same"_s, u"MB"_s, kelvoMemory.residentMegabytes, withTray, trayMemory.residentMegabytes, {}},
        {u"Proportional memory (PSS) at rest"_s, u"MB"_s, kelvoMemory.proportionalMegabytes, withRequests,
         requestsMemory.proportionalMegabytes, {}},
        {u"Private memory at rest"_s, u"MB"_s, kelvoMemory.privateMegabytes, withRequests,
         requestsMemory.privateMegabytes, u"at most 9 MB"_s},
        {u"  the same"_s, u"MB"_s, kelvoMemory.privateMegabytes, withTray, trayMemory.privateMegabytes, {}},
        {u"Wakeups in 20 s between rounds"_s, {}, wakeups, withTray, bareWakeups, u"none"_s},
    };
    // clang-format on
}

// ---- The popover ----

/// A program with a tray icon and a window under the pointer that a click on the icon shows or hides.
class Clicked
{
public:
    /// `ground` lists the possible background colours of the window.
    Clicked(qint64 processId, QList<QRgb> ground)
        : click_(TrayWatch::callOfItem(processId, u"Activate"_s) << pointer.x() << pointer.y())
        , ground_(std::move(ground))
    {
    }

    /// Clicks the icon as a tray does. Returns the milliseconds until the window is on the screen.
    double open()
    {
        QCursor::setPos(pointer);
        return click([this] { return column_.count(ground_) >= seen; });
    }

    /// Clicks the icon. Returns the milliseconds until the window is off the screen.
    double close()
    {
        return click([this] { return column_.count(ground_) == 0; });
    }

private:
    static constexpr QPoint pointer{640, 10};
    static constexpr int seen = 60;

    double click(const std::function<bool()> &isDone)
    {
        QElapsedTimer elapsed;
        elapsed.start();
        QDBusConnection::sessionBus().send(click_);
        while (!isDone()) {
            if (elapsed.hasExpired(std::chrono::milliseconds(aRoundAtMost).count())) {
                qFatal("Waited in vain for a window to come or go");
            }
            // Sleep, so that this loop does not take processor time from the program that draws.
            std::this_thread::sleep_for(200us);
        }
        const auto result = static_cast<double>(elapsed.nsecsElapsed()) / 1e6;
        letPass(700ms);
        return result;
    }

    QDBusMessage click_;
    QList<QRgb> ground_;
    ScreenColumn column_{pointer.x(), 40, 260};
};

Clicked clickedKelvo(const KelvoProcess &kelvo)
{
    return {kelvo.processId(), {0xffffffff, 0xff262628}};
}

Clicked clickedBare(const QProcess &bare)
{
    return {bare.processId(), {0xff3050c0}};
}

struct Openings
{
    std::vector<double> cold;
    std::vector<double> again;

    void add(Clicked program)
    {
        cold.push_back(program.open());
        program.close();
        for (int time = 0; time < 5; ++time) {
            again.push_back(program.open());
            program.close();
        }
    }
};

QList<Figure> measurePopover()
{
    World world;
    Openings own;
    Openings bare;
    Memory opened;
    Memory bareOpened;
    double wakeups = 0;
    constexpr int runs = 11;
    for (int run = 0; run < runs; ++run) {
        const auto kelvo = startKelvo(world);
        QProcess program;
        program.start(QStringLiteral(BARE_POPOVER), QStringList());
        letPass(2s);
        bare.add(clickedBare(program));
        own.add(clickedKelvo(*kelvo));
        if (run == runs - 1) {
            clickedBare(program).open();
            bareOpened = memoryOf(program.processId());
            clickedBare(program).close();
            clickedKelvo(*kelvo).open();
            letPass(1s);
            opened = memoryOf(kelvo->processId());
            clickedKelvo(*kelvo).close();
            letPass(4s);
            const auto before = wakeupsOf(kelvo->processId());
            letPass(20s);
            wakeups = static_cast<double>(wakeupsOf(kelvo->processId()) - before);
        }
        program.terminate();
        program.waitForFinished();
    }
    const auto with = u"bare Quick window"_s;
    // clang-format off
    return {
        {u"Click to first popover frame, cold"_s, u"ms"_s, median(own.cold), with, median(bare.cold),
         u"at most 1.5 x"_s},
        {u"Click to first popover frame, again"_s, u"ms"_s, median(own.again), with, median(bare.again),
         u"at most 2 x"_s},
        {u"Resident memory, popover open"_s, u"MB"_s, opened.residentMegabytes, with, bareOpened.residentMegabytes, {}},
        {u"Private memory, popover open"_s, u"MB"_s, opened.privateMegabytes, with, bareOpened.privateMegabytes, {}},
        {u"Wakeups in 20 s after the popover closed"_s, {}, wakeups, {}, 0, u"none"_s},
    };
    // clang-format on
}

/// The wakeups per second of an open popover.
struct OpenPopover
{
    double counting; ///< while the popover tells how many seconds ago it checked
    double still;    ///< when it tells minutes, so that nothing changes
};

OpenPopover wakeupsOfOpenPopover()
{
    World world;
    // No check while it is measured.
    const auto kelvo = startKelvo(world, watchingAll().replace("checkInterval=60", "checkInterval=300"));
    letPass(2s);
    clickedKelvo(*kelvo).open();
    const auto wakeups = [&kelvo] {
        constexpr auto time = 20s;
        const auto before = wakeupsOf(kelvo->processId());
        letPass(time);
        return static_cast<double>(wakeupsOf(kelvo->processId()) - before) / time.count();
    };
    letPass(4s);
    const auto counting = wakeups();
    letPass(40s);
    return {counting, wakeups()};
}

QList<Figure> measureOpen()
{
    const auto moving = wakeupsOfOpenPopover();
    const StillDesktop desktop;
    const auto still = wakeupsOfOpenPopover();
    return {{u"Wakeups a second, popover open"_s, {}, moving.still, {}, 0, u"at most 60"_s},
            {u"  the same while the seconds count"_s, {}, moving.counting, {}, 0, {}},
            {u"  the same with reduced motion"_s, {}, still.still, {}, 0, u"at most 2"_s},
            {u"  the same while the seconds count"_s, {}, still.counting, {}, 0, {}}};
}

/// What remains after the popover was used. The program unloads its views when no one was open for ten minutes.
QList<Figure> measureUsed()
{
    World world;
    const auto kelvo = startKelvo(world);
    QProcess program;
    program.start(QStringLiteral(BARE_POPOVER), QStringList());
    letPass(2s);
    Openings().add(clickedBare(program));
    Openings().add(clickedKelvo(*kelvo));
    letPass(1min);
    const auto closed = memoryOf(kelvo->processId());
    const auto threads = threadsOf(kelvo->processId());
    letPass(9min + 5s);
    const auto unloaded = memoryOf(kelvo->processId());
    const auto bare = memoryOf(program.processId());
    program.terminate();
    program.waitForFinished();
    const auto with = u"bare Quick window"_s;
    // clang-format off
    return {
        {u"Threads a minute after the popover closed"_s, {}, static_cast<double>(threads), {}, 0, u"at most 8"_s},
        {u"Resident memory, a minute after it closed"_s, u"MB"_s, closed.residentMegabytes, with,
         bare.residentMegabytes, {}},
        {u"Private memory, a minute after it closed"_s, u"MB"_s, closed.privateMegabytes, with,
         bare.privateMegabytes, {}},
        {u"Resident memory, ten minutes after it closed"_s, u"MB"_s, unloaded.residentMegabytes, with,
         bare.residentMegabytes, u"at most 1.2 x"_s},
        {u"Private memory, ten minutes after it closed"_s, u"MB"_s, unloaded.privateMegabytes, with,
         bare.privateMegabytes, u"at most 2 x"_s},
    };
    // clang-format on
}

// ---- A round ----

QList<Figure> measureRounds()
{
    constexpr int rounds = 30;
    World ownWorld;
    const auto kelvo = startKelvo(ownWorld);
    World bareWorld;
    const auto requests = startBareRequests(bareWorld);
    const auto cpuOfARound = [](World &world, qint64 processId, const std::function<void()> &start) {
        const auto before = cpuTimeOf(processId);
        world.round(start);
        return milliseconds(cpuTimeOf(processId) - before);
    };
    // The programs take turns, so that other load on the machine affects both.
    std::vector<double> own;
    std::vector<double> changed;
    std::vector<double> bare;
    for (int round = 0; round < rounds; ++round) {
        ownWorld.internet.setEndedIncidents(World::endedIncidents + round % 2);
        changed.push_back(cpuOfARound(ownWorld, kelvo->processId(), [&] { ownWorld.wake(); }));
        own.push_back(cpuOfARound(ownWorld, kelvo->processId(), [&] { ownWorld.wake(); }));
        bare.push_back(cpuOfARound(bareWorld, requests->processId(), [&] { requests->writeLine(); }));
    }
    const auto without = u"eight GETs without decoding"_s;
    return {{u"CPU of a round over fresh connections (median of 30)"_s, u"ms"_s, median(own), without, median(bare),
             u"at most 1.3 x"_s},
            {u"  the same when the largest feed has changed"_s, u"ms"_s, median(changed), without, median(bare), {}}};
}

// ---- The alert ----

QList<Figure> measureAlert()
{
    std::vector<double> latencies;
    for (int run = 0; run < 5; ++run) {
        World world;
        PrivateBus sessionBus;
        sessionBus.start();
        FakeNotificationServer server(sessionBus, {});
        world.internet.setComponent(StatusPage::Claude, u"claude.ai"_s, u"major_outage"_s);
        KelvoProcess kelvo(world.internet);
        kelvo.setEnvironment(u"DBUS_SYSTEM_BUS_ADDRESS"_s, world.systemBus.address());
        kelvo.setEnvironment(u"DBUS_SESSION_BUS_ADDRESS"_s, sessionBus.address());
        kelvo.writeSettings("[General]\nhasOnboarded=true\n");
        // Watch only Claude, so that the other requests of a round do not delay the alert.
        kelvo.start();
        waitUntil("the first answer", [&] { return !world.internet.requests().isEmpty(); });
        letPass(500ms);

        QElapsedTimer sinceProbe;
        QObject::connect(&world.internet, &SimulatedInternet::requestReceived, [&](const SimulatedRequest &request) {
            if (request.host == "claude.ai"_L1) {
                sinceProbe.start();
            }
        });
        world.internet.setAllOperational(StatusPage::Claude);
        world.wake();
        waitUntil("the alert", [&] { return !server.notifications().isEmpty(); });
        latencies.push_back(static_cast<double>(sinceProbe.nsecsElapsed()) / 1e6);
    }
    // clang-format off
    return {{u"Probe answered to alert handed over (median of 5)"_s, u"ms"_s, median(latencies), {}, 0,
             u"at most 10 ms"_s}};
    // clang-format on
}

// ---- Weeks ----

QList<Figure> measureOpenings(int openings)
{
    World world;
    const auto kelvo = startKelvo(world);
    auto program = clickedKelvo(*kelvo);
    const auto run = [&](int count) {
        for (int opening = 0; opening < count; ++opening) {
            program.open();
            program.close();
        }
        letPass(2s);
    };
    run(std::min(openings, 20));
    const auto memory = memoryOf(kelvo->processId());
    const auto descriptors = descriptorsOf(kelvo->processId());
    run(openings);
    const auto title = u"in %1 openings"_s.arg(openings);
    // clang-format off
    return {
        {u"Growth of anonymous memory "_s + title, u"MB"_s,
         memoryOf(kelvo->processId()).anonymousMegabytes - memory.anonymousMegabytes, {}, 0, u"none"_s},
        {u"Growth of descriptors "_s + title, {},
         static_cast<double>(descriptorsOf(kelvo->processId()) - descriptors), {}, 0, u"none"_s},
    };
    // clang-format on
}

struct Measurement
{
    QString name;
    std::function<QList<Figure>()> run;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Measures Kelvo and minimal Qt programs on the same desktop."_s);
    parser.addHelpOption();
    const QCommandLineOption growthOpenings(
        u"growth-openings"_s, u"Popover openings of the growth measurement (200)."_s, u"count"_s, u"200"_s);
    parser.addOption(growthOpenings);
    const QList<Measurement> measurements{
        {u"start"_s, measureStart},
        {u"rest"_s, measureRest},
        {u"popover"_s, measurePopover},
        {u"open"_s, measureOpen},
        {u"rounds"_s, measureRounds},
        {u"alert"_s, measureAlert},
        {u"openings"_s, [&] { return measureOpenings(parser.value(growthOpenings).toInt()); }},
        {u"used"_s, measureUsed},
    };
    const QCommandLineOption write(u"write"_s, u"Also write the tables into this document."_s, u"document"_s);
    parser.addOption(write);
    QStringList names;
    for (const auto &measurement : measurements) {
        names.append(measurement.name);
    }
    parser.addPositionalArgument(u"what"_s, u"What to measure: %1. Default: everything."_s.arg(names.join(", "_L1)),
                                 u"[what...]"_s);
    parser.process(application);

    const auto wanted = parser.positionalArguments().isEmpty() ? names : parser.positionalArguments();
    for (const auto &name : wanted) {
        if (!names.contains(name)) {
            QTextStream(stderr) << u"There is no measurement “%1”; see --help."_s.arg(name) << Qt::endl;
            return 2;
        }
    }
    QList<Figure> figures;
    for (const auto &measurement : measurements) {
        if (!wanted.contains(measurement.name)) {
            continue;
        }
        const auto measured = measurement.run();
        if (parser.isSet(write)) {
            writeTable(parser.value(write), measurement.name, measured);
        }
        figures += measured;
    }
    printTable(figures);
    return 0;
}
