#pragma once

#include "alerts/NotifierStore.h"
#include "model/Service.h"
#include "model/ServiceStatus.h"
#include "monitor/DisplayRules.h"
#include "monitor/PollLoop.h"
#include "monitor/RingState.h"
#include "monitor/Transition.h"
#include "platform/ContinuousClock.h"
#include "platform/NetworkWatch.h"
#include "platform/SleepWake.h"
#include "platform/WallClock.h"
#include "settings/SettingsStore.h"
#include "sources/StatusChecks.h"

#include <QHash>
#include <QObject>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace kelvo {

/// The monitor: it has the watched services checked on time, keeps what is known of them, recognises the beginning and
/// the confirmed end of trouble, raises the alerts, and derives what the ring and the popover show.
class StatusStore : public QObject
{
    Q_OBJECT

public:
    /// Starts watching at once, with a round of checks.
    StatusStore(SettingsStore &settings, NotifierStore &notifier, StatusChecks &checks, ContinuousClock &clock,
                SleepWake &sleepWake, NetworkWatch &networkWatch, WallClock wallClock);
    ~StatusStore() override;
    /// The monitor of this process. Available once the program is composed.
    static StatusStore &shared();

    /// Of every service that was checked at least once.
    const QHash<ServiceID, ServiceStatus> &statuses() const { return statuses_; }
    /// The service shown large, unless the user peeks at another.
    std::optional<ServiceID> heroID() const { return heroID_; }
    bool popoverIsOpen() const { return popoverIsOpen_; }
    /// The service that the user looks at for the moment.
    std::optional<ServiceID> peekedID() const { return peekedID_; }
    /// The time as the views see it: ticks each second while the popover is open, and rests while it is closed.
    TimePoint now() const { return now_; }

    /// The record of a service; the default one while it was never checked.
    ServiceStatus status(ServiceID of) const { return statuses_.value(of); }
    /// Whether any watched service is in trouble.
    bool anyOutage() const;
    std::optional<Service> hero() const;
    /// Whether the hero is another than the primary service because it is in trouble.
    bool heroIsPromoted() const;
    QString heroStatusLabel() const;
    QString heroBodyLine() const;
    QString groupHeading() const;
    /// The watched services but the hero, in the user's order.
    std::vector<Service> groupRows() const;
    RingState ringState() const;

    /// Closing ends a peek and promotes the hero.
    void setPopoverIsOpen(bool open);
    /// Shows that service large while the popover is open; a second time hands back.
    void peek(ServiceID id);

    /// Starts the poll loop anew: with a round at once, or with a wait.
    void restartPolling(bool immediate);
    /// Checks every watched service once, all at the same time. Finishes when all have; does nothing while watching is
    /// switched off.
    QFuture<void> checkAll();

Q_SIGNALS:
    void objectWillChange();
    void statusesChanged();
    void heroIDChanged();
    void popoverIsOpenChanged();
    void peekedIDChanged();
    void nowChanged();

private:
    static constexpr std::chrono::seconds outageInterval{20};
    static constexpr std::chrono::milliseconds settingsQuietTime{300};
    /// A network comes up in several steps: address, route, name servers.
    static constexpr std::chrono::seconds networkSettlingTime{2};

    template<typename Value>
    void publish(Value &field, Value value, void (StatusStore::*notifier)());
    std::vector<WatchedStatus> watched() const;
    std::optional<ServiceStatus> heroStatus() const;
    std::optional<Service> otherAffected() const;

    void observeSettings();
    void observeSleepWake(SleepWake &sleepWake);
    void observeNetwork(NetworkWatch &networkWatch);
    void startClock();
    std::chrono::seconds pollInterval() const;
    QFuture<void> pollRound();
    QFuture<void> check(const Service &service);
    void record(const Service &service, const StatusReading &reading, bool isUsable);
    void applyPromotion();

    SettingsStore &settings_;
    NotifierStore &notifier_;
    StatusChecks &checks_;
    ContinuousClock &clock_;
    WallClock wallClock_;

    QHash<ServiceID, ServiceStatus> statuses_;
    std::optional<ServiceID> heroID_;
    bool popoverIsOpen_ = false;
    std::optional<ServiceID> peekedID_;
    TimePoint now_;
    bool isAsleep_ = false;

    PollLoop pollLoop_;
    std::unique_ptr<ContinuousClock::Timer> clockTimer_;
    std::unique_ptr<ContinuousClock::Timer> settingsTimer_;
    std::unique_ptr<ContinuousClock::Timer> networkTimer_; ///< while a change of the network settles
};

} // namespace kelvo
