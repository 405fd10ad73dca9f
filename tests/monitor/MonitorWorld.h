#pragma once

#include "alerts/NotifierStore.h"
#include "monitor/StatusStore.h"
#include "settings/SettingsStore.h"
#include "support/FakeLoginItem.h"
#include "support/FakeNetworkWatch.h"
#include "support/FakeNotificationCenter.h"
#include "support/FakeSleepWake.h"
#include "support/FakeStatusChecks.h"
#include "support/ManualClock.h"
#include "support/MemoryPreferences.h"

#include <algorithm>

namespace kelvo {

/// A monitor and its dependencies. The test controls the time, sleep, the network and every answer.
struct MonitorWorld
{
    /// Watches these services in this order. `store` is made by `start`.
    explicit MonitorWorld(const std::vector<ServiceID> &services = {ServiceID::claude})
    {
        watch(services);
        settings.setCheckInterval(CheckInterval::oneMinute);
    }

    void watch(const std::vector<ServiceID> &services)
    {
        auto order = services;
        for (const auto id : allServiceIDs) {
            if (std::find(services.begin(), services.end(), id) == services.end()) {
                order.push_back(id);
            }
        }
        settings.setServiceOrder(order);
        settings.setEnabledServices({services.begin(), services.end()});
    }

    void start()
    {
        store = std::make_unique<StatusStore>(settings, notifier, checks, clock, sleepWake, networkWatch,
                                              clock.wallClock());
    }

    /// Starts the monitor and answers every check of the first round with `health`.
    void startWith(ServiceHealth health)
    {
        start();
        checks.answerAll(health);
    }

    ServiceHealth health(ServiceID id) const { return store->status(id).health; }
    QString label(ServiceID id) const { return store->status(id).label; }
    QStringList alerts() const { return center.titles(); }
    /// The number of status requests so far.
    int readCount() const { return checks.count(FakeStatusChecks::Kind::read); }
    int probeCount() const { return checks.count(FakeStatusChecks::Kind::probe); }

    MemoryPreferences preferences;
    FakeLoginItem loginItem;
    SettingsStore settings{preferences, loginItem};
    FakeNotificationCenter center;
    HttpSession session{{}, NotifierStore::limits};
    NotifierStore notifier{settings, center, session};
    ManualClock clock;
    FakeSleepWake sleepWake;
    FakeNetworkWatch networkWatch;
    FakeStatusChecks checks;
    std::unique_ptr<StatusStore> store;
};

} // namespace kelvo
