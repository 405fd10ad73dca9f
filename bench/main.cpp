#include "MeasuredProcess.h"
#include "Table.h"
#include "TrayWatch.h"

#include "KelvoProcess.h"
#include "model/Service.h"
#include "support/FakeLogind.h"
#include "support/FakeNotificationServer.h"
#include "support/PrivateBus.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;
using namespace kelvo;
using namespace std::chrono_literals;

namespace {

constexpr auto aRoundAtMost = 20s;
constexpr int requestsOfARound = 8;

double milliseconds(std::chrono::nanoseconds duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

void waitUntil(const char *what, const std::function<bool()> &condition)
{
    if (!QTest::qWaitFor(condition, static_cast<int>(std::chrono::milliseconds(aRoundAtMost).count()))) {
        qFatal("Waited in vain: %s", what);
    }
}

/// All that a measured program lives in: an internet, and a login manager that can put it to sleep and wake it, which
/// makes Kelvo check at once.
struct World
{
    World()
    {
        systemBus.start();
        logind = std::make_unique<FakeLogind>(systemBus);
        // As large as the real feed, which dominates a round.
        internet.setEndedIncidents(600);
    }

    void wake()
    {
        logind->prepareForSleep(true);
        logind->prepareForSleep(false);
    }

    /// Starts a round by `start`, and waits until all of it was asked for and answered.
    void round(const std::function<void()> &start)
    {
        internet.clearRequests();
        start();
        waitUntil("a round", [this] { return internet.requests().size() >= requestsOfARound; });
        QTest::qWait(60);
    }

    SimulatedInternet internet;
    PrivateBus systemBus;
    std::unique_ptr<FakeLogind> logind;
};

QByteArray watchingAll()
{
    QByteArrayList ids;
    for (const auto &service : Service::catalog()) {
        ids.append(rawValue(service.id).toUtf8());
    }
    return "[General]\nhasOnboarded=true\ncheckInterval=60\nenabledServices=" + ids.join(", ") + "\n";
}

std::unique_ptr<KelvoProcess> startKelvo(World &world)
{
    auto kelvo = std::make_unique<KelvoProcess>(world.internet);
    kelvo->setEnvironment(u"DBUS_SYSTEM_BUS_ADDRESS"_s, world.systemBus.address());
    kelvo->writeSettings(watchingAll());
    world.round([&] { kelvo->start(); });
    return kelvo;
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

double startToRing(const QString &program)
{
    QTemporaryDir configuration;
    TrayWatch tray;
    QSignalSpy registered(&tray, &TrayWatch::registered);
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_CONFIG_HOME"_s, configuration.path());
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
    return {{u"Start to ring registered (median of 15)"_s, u"ms"_s, median(kelvo), u"bare tray icon"_s, median(bare),
             u"at most 1.25 x"_s}};
}

// ---- At rest ----

QList<Figure> measureRest()
{
    World world;
    const auto kelvo = startKelvo(world);
    const auto requests = startBareRequests(world);
    QProcess tray;
    tray.start(QStringLiteral(BARE_TRAY), QStringList());
    QTest::qWait(4000);

    const auto kelvoWakeups = wakeupsOf(kelvo->processId());
    const auto trayWakeups = wakeupsOf(tray.processId());
    QTest::qWait(20'000);
    const auto kelvoMemory = memoryOf(kelvo->processId());
    const auto requestsMemory = memoryOf(requests->processId());
    const auto trayMemory = memoryOf(tray.processId());
    const auto wakeups = static_cast<double>(wakeupsOf(kelvo->processId()) - kelvoWakeups);
    const auto bareWakeups = static_cast<double>(wakeupsOf(tray.processId()) - trayWakeups);
    tray.terminate();
    tray.waitForFinished();
    const auto withTray = u"bare tray icon"_s;
    const auto withRequests = u"bare tray icon with eight GETs"_s;
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
}

// ---- A round ----

double cpuOfARound(World &world, qint64 processId, const std::function<void()> &start)
{
    constexpr int rounds = 20;
    for (int warm = 0; warm < 3; ++warm) {
        world.round(start);
    }
    const auto before = cpuTimeOf(processId);
    for (int round = 0; round < rounds; ++round) {
        world.round(start);
        if (!world.internet.keepsConnections()) {
            world.internet.closeIdleConnections();
        }
    }
    return milliseconds(cpuTimeOf(processId) - before) / rounds;
}

QList<Figure> measureRounds()
{
    QList<Figure> figures;
    for (const bool kept : {true, false}) {
        World world;
        world.internet.setKeepsConnections(kept);
        const auto kelvo = startKelvo(world);
        const double own = cpuOfARound(world, kelvo->processId(), [&] { world.wake(); });
        kelvo->stop();
        const auto requests = startBareRequests(world);
        const double bare = cpuOfARound(world, requests->processId(), [&] { requests->writeLine(); });
        figures.append({kept ? u"CPU of a round, connections kept"_s : u"CPU of a round, connections closed"_s, u"ms"_s,
                        own, u"eight GETs without decoding"_s, bare, kept ? u"at most 12 ms"_s : u"at most 20 ms"_s});
    }
    return figures;
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
        kelvo.writeSettings(watchingAll());
        world.round([&] { kelvo.start(); });

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
    return {{u"Probe answered to alert handed over (median of 5)"_s, u"ms"_s, median(latencies), {}, 0,
             u"at most 10 ms"_s}};
}

// ---- Weeks ----

QList<Figure> measureGrowth(int rounds)
{
    World world;
    const auto kelvo = startKelvo(world);
    const auto run = [&](int count) {
        for (int round = 0; round < count; ++round) {
            world.internet.clearRequests();
            world.wake();
            waitUntil("a round", [&] { return world.internet.requests().size() >= requestsOfARound; });
        }
        QTest::qWait(1000);
    };
    run(std::min(rounds, 300));
    const auto memory = memoryOf(kelvo->processId());
    const auto descriptors = descriptorsOf(kelvo->processId());
    run(rounds);
    const auto title = u"in %1 rounds"_s.arg(rounds);
    return {
        {u"Growth of private memory "_s + title, u"MB"_s,
         memoryOf(kelvo->processId()).privateMegabytes - memory.privateMegabytes, {}, 0, u"none"_s},
        {u"Growth of descriptors "_s + title, {},
         static_cast<double>(descriptorsOf(kelvo->processId()) - descriptors), {}, 0, u"none"_s},
    };
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Measures Kelvo beside bare Qt programs on the same desktop."_s);
    parser.addHelpOption();
    const QCommandLineOption growthRounds(u"growth-rounds"_s, u"Rounds to look for growth in (1000)."_s, u"count"_s,
                                          u"1000"_s);
    parser.addOption(growthRounds);
    parser.process(application);

    printTable(measureStart() + measureRest() + measureRounds() + measureAlert()
               + measureGrowth(parser.value(growthRounds).toInt()));
    return 0;
}
