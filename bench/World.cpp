#include "World.h"

#include "model/Service.h"

#include <QCoreApplication>
#include <QTimer>

namespace kelvo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

bool letHappen(std::chrono::milliseconds atMost, const std::function<bool()> &condition)
{
    QTimer alarm;
    alarm.setSingleShot(true);
    alarm.start(atMost);
    while (!condition()) {
        if (!alarm.isActive()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void letPass(std::chrono::milliseconds time)
{
    letHappen(time, [] { return false; });
}

void waitUntil(const char *what, const std::function<bool()> &condition)
{
    if (!letHappen(60s, condition)) {
        qFatal("Waited in vain: %s", what);
    }
}

World::World()
{
    systemBus.start();
    logind = std::make_unique<FakeLogind>(systemBus);
    internet.setEndedIncidents(endedIncidents);
}

void World::wake()
{
    logind->prepareForSleep(true);
    logind->prepareForSleep(false);
}

void World::round(const std::function<void()> &start)
{
    internet.clearRequests();
    start();
    waitUntil("a round", [this] { return internet.requests().size() >= requestsOfARound; });
    letPass(60ms);
}

QByteArray watchingAll()
{
    QByteArrayList ids;
    for (const auto &service : Service::catalog()) {
        ids.append(rawValue(service.id).toUtf8());
    }
    return "[General]\nhasOnboarded=true\ncheckInterval=60\nenabledServices=" + ids.join(", ") + "\n";
}

std::unique_ptr<KelvoProcess> startKelvo(World &world, const QByteArray &settings)
{
    auto kelvo = std::make_unique<KelvoProcess>(world.internet);
    kelvo->setEnvironment(u"DBUS_SYSTEM_BUS_ADDRESS"_s, world.systemBus.address());
    kelvo->writeSettings(settings);
    world.round([&] { kelvo->start(); });
    return kelvo;
}

} // namespace kelvo
