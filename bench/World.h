#pragma once

#include "KelvoProcess.h"
#include "support/FakeLogind.h"
#include "support/PrivateBus.h"

#include <chrono>
#include <functional>
#include <memory>

namespace kelvo {

/// The number of requests in a round in which all eight services are watched and none needs a probe.
inline constexpr int requestsOfARound = 8;

/// Processes events until `condition` holds, and checks it after each. Returns false after `atMost`. (QTest::qWaitFor
/// sleeps between checks, and the simulated internet in this process would sleep with it.)
bool letHappen(std::chrono::milliseconds atMost, const std::function<bool()> &condition);
void letPass(std::chrono::milliseconds time);
/// Processes events until `condition` holds. Ends the program when it takes much longer than a round.
void waitUntil(const char *what, const std::function<bool()> &condition);

/// The environment of a measured program: a simulated internet, and a login manager that announces sleep and wake-up.
/// After a wake-up Kelvo checks at once.
struct World
{
    /// The feed of incidents is as large as the real one, which dominates the cost of a round.
    static constexpr int endedIncidents = 600;

    World();

    void wake();
    /// Starts a round by calling `start`, and waits until all its requests were received and answered.
    void round(const std::function<void()> &start);

    SimulatedInternet internet;
    PrivateBus systemBus;
    std::unique_ptr<FakeLogind> logind;
};

/// Lines of the settings file with which all services are watched, every minute.
QByteArray watchingAll();
/// Starts Kelvo in this world with these settings. Returns after its first round.
std::unique_ptr<KelvoProcess> startKelvo(World &world, const QByteArray &settings = watchingAll());

} // namespace kelvo
