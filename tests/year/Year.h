#pragma once

#include "Oracle.h"
#include "Random.h"
#include "Receivers.h"
#include "Timeline.h"
#include "Vendors.h"

#include "alerts/NotifierStore.h"
#include "monitor/StatusStore.h"
#include "settings/SettingsStore.h"
#include "support/FakeLoginItem.h"
#include "support/FakeNetworkWatch.h"
#include "support/FakeNotificationCenter.h"
#include "support/FakeSleepWake.h"
#include "support/MemoryPreferences.h"

#include <memory>

namespace kelvo {

/// The life of the real stores in a random world. After each event their deeds, timers, records and texts are compared with
/// those that the oracle knows to be right.
class Year
{
public:
    /// How often something happened.
    struct Tally
    {
        long long steps = 0;
        int recoveryAlerts = 0;
        int outageAlerts = 0;
        int posts = 0;
        int sleeps = 0;
        int networkChanges = 0;
        int clockSteps = 0;
        int settingsChanges = 0;
        int openings = 0;
        int peeks = 0;
        int starts = 0;
    };

    explicit Year(std::uint32_t seed);
    ~Year();

    /// Lets the time pass to the end of a day, and on to a moment at which the program is at rest. Returns what went wrong
    /// first; empty when nothing did.
    QString liveThrough(int day);

    /// The last events, oldest first.
    QStringList journal() const;
    const Tally &tally() const { return tally_; }
    const Vendors::Tally &vendors() const { return vendors_.tally(); }
    /// The objects that the program owns.
    qsizetype objectCount() const;

private:
    /// The stores of one start of the program.
    struct Program
    {
        explicit Program(Year &year);

        SettingsStore settings;
        HttpSession session;
        NotifierStore notifier;
        StatusStore store;
    };
    struct Phase
    {
        std::chrono::milliseconds length;
        Vendors::State state;
    };
    /// What was told about a service.
    struct Told
    {
        bool troubleOnPage = false; ///< since the last recovery
        bool isDown = false;
    };

    void start();
    void restartNowAndThen();

    void haveIncident(ServiceID id);
    std::vector<Phase> incident();
    void play(ServiceID id, const std::vector<Phase> &phases);

    void sleepNowAndThen();
    void wake();
    void wakeWithoutSleep();
    void loseNetworkNowAndThen();
    void changeNetwork();
    void setClockNowAndThen();
    void changeSettingsNowAndThen();
    void changeSetting();
    void setWatching(bool watching);
    void openPopoverNowAndThen();
    void lookAgainAndAgain();
    void openPopover();
    void closePopover();
    void peek();

    /// Ends a step: compares the program with the oracle.
    void compare();
    /// Compares what the program knows and shows, in steps in which that changes.
    void compareState();
    void audit(const Deeds &deeds);
    void complain(const QString &what);
    bool isAtRest() const;

    Random random_;
    Timeline timeline_;
    Vendors vendors_;
    std::vector<Deeds::Post> posts_;
    MemoryPreferences preferences_;
    FakeLoginItem loginItem_;
    FakeNotificationCenter center_;
    FakeSleepWake sleepWake_;
    FakeNetworkWatch networkWatch_;
    Wishes wishes_;
    std::unique_ptr<Oracle> oracle_;
    std::unique_ptr<Program> program_;
    bool isAsleep_ = false;
    bool popoverIsOpen_ = false;
    bool isLooking_ = false; ///< openings of the popover are to come
    std::map<ServiceID, Told> told_;
    Tally tally_;
    QString complaint_;
};

} // namespace kelvo
