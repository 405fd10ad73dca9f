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

/// The monitor. It checks the watched services on schedule, keeps their records, detects the start and the confirmed end
/// of outages, sends the alerts, and derives what the ring and the popover show.
///
/// Every write to a property emits `objectWillChange` before and the property's change signal after.
class StatusStore : public QObject
{
    Q_OBJECT

public:
    /// Starts the poll loop with a round of checks. All arguments must outlive this object.
    StatusStore(SettingsStore &settings, NotifierStore &notifier, StatusChecks &checks, ContinuousClock &clock,
                SleepWake &sleepWake, NetworkWatch &networkWatch, WallClock wallClock);
    ~StatusStore() override;
    /// The monitor of this process. Requires a living Composition.
    static StatusStore &shared();

    /// The records of all services that were checked at least once.
    const QHash<ServiceID, ServiceStatus> &statuses() const { return statuses_; }
    /// The service that the popover shows large unless the user peeks at another; nullopt when there is none.
    std::optional<ServiceID> heroID() const { return heroID_; }
    bool popoverIsOpen() const { return popoverIsOpen_; }
    /// The service that the user peeks at: it is shown large until the popover closes.
    std::optional<ServiceID> peekedID() const { return peekedID_; }
    /// The current time for the views. It is updated each second while the popover is open, and not while it is closed.
    TimePoint now() const { return now_; }

    /// The record of a service; a default-constructed one if it was never checked.
    ServiceStatus status(ServiceID of) const { return statuses_.value(of); }
    /// Whether any watched service is affected.
    bool anyOutage() const;
    std::optional<Service> hero() const;
    /// Whether the service shown large is affected and is not the primary service.
    bool heroIsPromoted() const;
    QString heroStatusLabel() const;
    QString heroBodyLine() const;
    QString groupHeading() const;
    /// The watched services except the one shown large, in the user's order.
    std::vector<Service> groupRows() const;
    RingState ringState() const;

    /// Tells the monitor that the popover was opened or closed. Closing ends a peek and chooses the hero again.
    void setPopoverIsOpen(bool open);
    /// Shows a service large until the popover closes. Peeking at the same service again ends the peek.
    void peek(ServiceID id);

    /// Restarts the poll loop, with a round if `immediate` and with a wait otherwise.
    void restartPolling(bool immediate);
    /// Checks all watched services at the same time. The future finishes when all checks have. Does nothing while
    /// watching is off.
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
    /// The delay after a network change. A network comes up in several steps: address, route, name servers.
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
    std::unique_ptr<ContinuousClock::Timer> networkTimer_; ///< runs while a network change settles
};

} // namespace kelvo
