#pragma once

#include "alerts/NotifierStore.h"
#include "http/HttpSession.h"
#include "monitor/StatusStore.h"
#include "settings/SettingsStore.h"
#include "support/FakeLoginItem.h"
#include "support/FakeNetworkWatch.h"
#include "support/FakeNotificationCenter.h"
#include "support/FakeSleepWake.h"
#include "support/FakeStatusChecks.h"
#include "support/ManualClock.h"
#include "support/MemoryPreferences.h"

#include <map>

namespace kelvo {

/// The real stores with fakes at all boundaries.
struct Stores
{
    /// Watches these services, in this order. Starts the monitor.
    explicit Stores(const std::vector<ServiceID> &watchedServices)
        : settings(choosing(watchedServices), loginItem)
    {
    }

    /// Runs a round of checks in which each service has its health in `healths`; other services are operational.
    void round(const std::map<ServiceID, ServiceHealth> &healths = {}, const QString &label = {})
    {
        checks.readScript = [healths, label](ServiceID id) {
            const auto found = healths.find(id);
            return found == healths.end() ? StatusReading{ServiceHealth::operational, QStringLiteral("Operational")}
                                          : StatusReading{found->second, label};
        };
        for (const auto question : checks.open(FakeStatusChecks::Kind::read)) {
            checks.drop(question);
        }
        store.checkAll();
        settle();
    }

    ManualClock clock;
    FakeStatusChecks checks;
    FakeSleepWake sleepWake;
    FakeNetworkWatch networkWatch;
    FakeNotificationCenter center;
    MemoryPreferences preferences;
    FakeLoginItem loginItem;
    HttpSession session{{}, NotifierStore::limits};
    SettingsStore settings;
    NotifierStore notifier{settings, center, session};
    StatusStore store{settings, notifier, checks, clock, sleepWake, networkWatch, clock.wallClock()};

private:
    /// Stores the selection as if it had been made in an earlier run.
    Preferences &choosing(const std::vector<ServiceID> &services)
    {
        QStringList raw;
        for (const auto id : services) {
            raw.append(rawValue(id));
        }
        preferences.place(QStringLiteral("serviceOrder"), raw);
        preferences.place(QStringLiteral("enabledServices"), raw);
        return preferences;
    }
};

} // namespace kelvo
