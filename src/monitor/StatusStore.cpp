#include "monitor/StatusStore.h"

#include "ReadyFuture.h"
#include "WhileAlive.h"
#include "platform/WorkActivity.h"

#include <QFuture>

#include <algorithm>
#include <memory>

namespace kelvo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

std::optional<ServiceID> idOf(const std::optional<Service> &service)
{
    return service ? std::optional(service->id) : std::nullopt;
}

} // namespace

StatusStore::StatusStore(SettingsStore &settings, NotifierStore &notifier, StatusChecks &checks, ContinuousClock &clock,
                         SleepWake &sleepWake, NetworkWatch &networkWatch, WallClock wallClock)
    : settings_(settings)
    , notifier_(notifier)
    , checks_(checks)
    , clock_(clock)
    , wallClock_(std::move(wallClock))
    , heroID_(idOf(settings.primaryService()))
    , now_(wallClock_())
    , pollLoop_(clock, [this] { return pollInterval(); }, [this] { return pollRound(); })
{
    observeSettings();
    observeSleepWake(sleepWake);
    observeNetwork(networkWatch);
    restartPolling(true);
}

StatusStore::~StatusStore() = default;

bool StatusStore::anyOutage() const
{
    const auto services = watched();
    return std::any_of(services.begin(), services.end(),
                       [](const WatchedStatus &w) { return isAffected(w.status.health); });
}

std::optional<Service> StatusStore::hero() const
{
    if (peekedID_) {
        return Service::by(*peekedID_);
    }
    if (heroID_) {
        return Service::by(*heroID_);
    }
    return settings_.primaryService();
}

bool StatusStore::heroIsPromoted() const
{
    const auto shown = hero();
    const auto primary = settings_.primaryService();
    return shown && primary && shown->id != primary->id && isAffected(status(shown->id).health);
}

QString StatusStore::heroStatusLabel() const
{
    return kelvo::heroStatusLabel(heroStatus());
}

QString StatusStore::heroBodyLine() const
{
    return kelvo::heroBodyLine(heroStatus(), otherAffected(), wallClock_());
}

QString StatusStore::groupHeading() const
{
    return kelvo::groupHeading(heroStatus(), otherAffected().has_value());
}

std::vector<Service> StatusStore::groupRows() const
{
    auto rows = settings_.watchedServices();
    if (const auto shown = idOf(hero())) {
        std::erase_if(rows, [shown](const Service &service) { return service.id == *shown; });
    }
    return rows;
}

RingState StatusStore::ringState() const
{
    return kelvo::ringState(settings_.watchOnThisMac(), watched());
}

void StatusStore::setPopoverIsOpen(bool open)
{
    publish(popoverIsOpen_, open, &StatusStore::popoverIsOpenChanged);
    if (open) {
        startClock();
        return;
    }
    clockTimer_.reset();
    publish(peekedID_, {}, &StatusStore::peekedIDChanged);
    applyPromotion();
}

void StatusStore::peek(ServiceID id)
{
    publish(peekedID_, peekedID_ == id ? std::nullopt : std::optional(id), &StatusStore::peekedIDChanged);
}

void StatusStore::restartPolling(bool immediate)
{
    if (immediate) {
        pollLoop_.restart([this] { return checkAll(); });
    } else {
        pollLoop_.restart();
    }
}

QFuture<void> StatusStore::checkAll()
{
    if (!settings_.watchOnThisMac()) {
        return readyFuture();
    }
    auto activity = std::make_shared<WorkActivity>();
    const auto services = settings_.watchedServices();
    QList<QFuture<void>> checks;
    for (const auto &service : services) {
        checks.append(check(service));
    }
    auto end = [this, activity = std::move(activity)](const QList<QFuture<void>> &) mutable {
        activity.reset();
        // While the popover is open the hero does not change; closing the popover promotes.
        if (!popoverIsOpen_) {
            applyPromotion();
        }
    };
    return QtFuture::whenAll(checks.begin(), checks.end()).then(whileAlive(this, std::move(end)));
}

template<typename Value>
void StatusStore::publish(Value &field, Value value, void (StatusStore::*notifier)())
{
    Q_EMIT objectWillChange();
    field = std::move(value);
    Q_EMIT(this->*notifier)();
}

std::vector<WatchedStatus> StatusStore::watched() const
{
    std::vector<WatchedStatus> watched;
    for (auto &service : settings_.watchedServices()) {
        const auto known = status(service.id);
        watched.push_back({std::move(service), known});
    }
    return watched;
}

std::optional<ServiceStatus> StatusStore::heroStatus() const
{
    const auto shown = hero();
    return shown ? std::optional(status(shown->id)) : std::nullopt;
}

std::optional<Service> StatusStore::otherAffected() const
{
    return firstOtherAffected(watched(), idOf(hero()));
}

/// Restarts the wait of the poll loop after a settings change, once no further change has followed for
/// `settingsQuietTime`.
void StatusStore::observeSettings()
{
    connect(&settings_, &SettingsStore::objectWillChange, this,
            [this] { settingsTimer_ = clock_.after(settingsQuietTime, [this] { restartPolling(false); }); });
    // A new order or selection changes the hero at once, not only after the next round.
    connect(&settings_, &SettingsStore::objectDidChange, this, [this] {
        if (!popoverIsOpen_) {
            applyPromotion();
        }
    });
}

/// The poll loop keeps running during sleep. Its rounds check nothing until the machine has woken up, and a wait that
/// ends during sleep ends at wake-up.
void StatusStore::observeSleepWake(SleepWake &sleepWake)
{
    connect(&sleepWake, &SleepWake::willSleep, this, [this] { isAsleep_ = true; });
    connect(&sleepWake, &SleepWake::didWake, this, [this] {
        isAsleep_ = false;
        networkTimer_.reset();
        checks_.abortAll();
        checkAll();
    });
}

/// A network change does not affect the poll loop either. It aborts the pending requests, whose connections belong to
/// the old network, and starts one extra round after `networkSettlingTime`.
void StatusStore::observeNetwork(NetworkWatch &networkWatch)
{
    connect(&networkWatch, &NetworkWatch::changed, this, [this] {
        if (isAsleep_ || !settings_.watchOnThisMac()) {
            return;
        }
        checks_.abortAll();
        if (!networkTimer_) {
            networkTimer_ = clock_.after(networkSettlingTime, [this] {
                networkTimer_.reset();
                pollRound();
            });
        }
    });
}

/// Updates `now` each second. Called only while the popover is open, so that a closed popover causes no wake-ups.
void StatusStore::startClock()
{
    publish(now_, wallClock_(), &StatusStore::nowChanged);
    clockTimer_ = clock_.after(1s, [this] { startClock(); });
}

std::chrono::seconds StatusStore::pollInterval() const
{
    return anyOutage() ? outageInterval : duration(settings_.checkInterval());
}

QFuture<void> StatusStore::pollRound()
{
    return isAsleep_ ? readyFuture() : checkAll();
}

QFuture<void> StatusStore::check(const Service &service)
{
    const auto judge = [this, service](const StatusReading &reading) {
        if (!isRecoveryCandidate(status(service.id), reading)) {
            record(service, reading, false);
            return readyFuture();
        }
        return checks_.probe(service).then(
            whileAlive(this, [this, service, reading](bool isUsable) { record(service, reading, isUsable); }));
    };
    return checks_.read(service).then(whileAlive(this, judge)).unwrap();
}

/// Overlapping checks of a service are recorded in the order in which they end. Each is judged against the current
/// record, so that one outage raises at most one alert at its start and one at its end.
void StatusStore::record(const Service &service, const StatusReading &reading, bool isUsable)
{
    const auto [step, next] = transition(status(service.id), reading, isUsable, wallClock_());
    auto statuses = statuses_;
    statuses.insert(service.id, next);
    publish(statuses_, std::move(statuses), &StatusStore::statusesChanged);

    switch (step) {
    case Step::recovered: notifier_.send(service.name + " is back"_L1, u"You can continue working."_s); break;
    case Step::outageBegan:
        if (settings_.outageAlertsEnabled()) {
            notifier_.send(service.name + " is down"_L1, u"We’ll notify you when it’s back."_s);
        }
        restartPolling(false);
        break;
    case Step::inconclusive:
    case Step::recoveryUnconfirmed:
    case Step::stillAffected:
    case Step::stillFine: break;
    }
}

void StatusStore::applyPromotion()
{
    publish(heroID_, promotedHero(watched(), idOf(settings_.primaryService()), wallClock_()),
            &StatusStore::heroIDChanged);
}

} // namespace kelvo
