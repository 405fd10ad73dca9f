#pragma once

#include "Deeds.h"
#include "Timeline.h"

#include "model/ServiceStatus.h"
#include "model/StatusReading.h"
#include "monitor/RingState.h"
#include "settings/CheckInterval.h"
#include "settings/RemoteChannel.h"

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace kelvo {

/// What the user has chosen.
struct Wishes
{
    std::vector<ServiceID> order{allServiceIDs.begin(), allServiceIDs.end()};
    std::set<ServiceID> enabled{ServiceID::claude};
    bool watching = true;
    CheckInterval interval = CheckInterval::fiveMinutes;
    bool outageAlerts = false;
    RemoteChannel armed = RemoteChannel::thisMac;
    QString webhook;
    QString token;
    QString chat;

    /// The services that are watched, in the user's order. One that is in the order twice is watched twice.
    std::vector<ServiceID> watched() const;
};

/// What the ring and the popover show.
struct View
{
    std::optional<ServiceID> hero;
    bool isPromoted = false;
    QString status;
    QString body;
    QString heading;
    std::vector<ServiceID> rows;
    RingState ring = RingState::inactive;
    bool isPolledFast = false;

    bool operator==(const View &) const = default;
};

/// Knows what the monitor must do. It is told what happens in the world, and keeps books of its own: which questions are
/// open, when the next round is due, what is known of each service. It shares no code with the monitor.
///
/// A step is one event of the world or one timer of the program. After each step `due` is what the program must have done
/// in it, no more and no less.
class Oracle
{
public:
    Oracle(const Timeline &timeline, Wishes wishes);

    // What happens. Functions whose names end in "ed" are called after the program has heard of the event.

    void programStarted();
    /// The earliest timer of the program has run.
    void timerFired();
    /// The page answers question `check`. Questions are numbered from 0 in the order in which rounds ask them.
    void pageAnswers(int check, const StatusReading &reading);
    /// The service answers the probe that belongs to question `check`.
    void probeAnswers(int check, bool isUsable);
    void computerSleeps();
    /// The open questions must fail now.
    void computerWakes();
    void computerWoke();
    void networkChanges();
    void networkChanged();
    void userChooses(const Wishes &wishes);
    void popoverOpens();
    void popoverOpened();
    void popoverCloses();
    void userPeeks(ServiceID id);

    const Wishes &wishes() const { return wishes_; }
    /// What the program must have done in this step.
    const Deeds &due() const { return due_; }
    /// Whether what the user sees can have changed in this step. Most answers confirm what is known.
    bool isViewDue() const { return isViewDue_; }
    void beginStep();
    /// When the timers of the program must be due, in order.
    std::vector<Timeline::Instant> timers() const;
    /// What the program must know of the services that it has checked.
    const std::map<ServiceID, ServiceStatus> &records() const { return records_; }
    View view() const;
    /// The last events, oldest first.
    QStringList journal() const;

private:
    enum class Alarm { poll, settingsQuiet, networkSettled, second };
    struct AlarmTime
    {
        Timeline::Instant due;
        unsigned long serial; ///< alarms of the same instant run in the order in which they were set
    };
    struct Check
    {
        ServiceID service;
        int round;
        std::optional<StatusReading> doubted; ///< the reading that awaits the probe
    };
    struct Round
    {
        std::size_t open;
        std::optional<int> loop; ///< the poll loop that waits for its end
    };

    struct Note
    {
        Timeline::Instant instant;
        const char *event;
        std::optional<ServiceID> service;
        std::optional<ServiceHealth> health;
    };

    /// Notes an event that can change what the user sees.
    void happens(const char *event, std::optional<ServiceID> service = {});
    void note(const char *event, std::optional<ServiceID> service = {}, std::optional<ServiceHealth> health = {});
    ServiceStatus recordOf(ServiceID id) const;
    bool isInTrouble(ServiceID id) const;
    void set(Alarm alarm, std::chrono::milliseconds wait);
    void waitForNextPoll();
    void restartLoop();
    void beginRound(std::optional<int> loop);
    void endRound(const Round &round);
    void conclude(int check, StatusReading reading, bool isConfirmed);
    void alert(const QString &title, const QString &body);
    void promote();
    std::optional<ServiceID> shown() const;

    const Timeline &timeline_;
    Wishes wishes_;
    Deeds due_;
    bool isViewDue_ = true;
    std::map<ServiceID, ServiceStatus> records_;
    std::map<int, Check> checks_; ///< the open questions
    std::map<int, Round> rounds_; ///< those that have not ended
    int nextCheck_ = 0;
    int nextRound_ = 0;
    int loop_ = 0; ///< the number of the current poll loop
    std::map<Alarm, AlarmTime> alarms_;
    unsigned long serial_ = 0;
    bool isAsleep_ = false;
    bool popoverIsOpen_ = false;
    std::optional<ServiceID> peeked_;
    std::optional<ServiceID> promoted_;
    std::deque<Note> notes_;
};

} // namespace kelvo
