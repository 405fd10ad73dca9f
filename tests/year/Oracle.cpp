#include "Oracle.h"

#include "model/Service.h"

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

bool isTrouble(ServiceHealth health)
{
    return health == ServiceHealth::degraded || health == ServiceHealth::outage;
}

QString nameOf(ServiceID id)
{
    switch (id) {
    case ServiceID::claude: return u"Claude"_s;
    case ServiceID::chatgpt: return u"ChatGPT"_s;
    case ServiceID::cursor: return u"Cursor"_s;
    case ServiceID::gemini: return u"Gemini"_s;
    case ServiceID::copilot: return u"GitHub Copilot"_s;
    case ServiceID::anthropicAPI: return u"Anthropic API"_s;
    case ServiceID::openaiAPI: return u"OpenAI API"_s;
    case ServiceID::claudeCode: return u"Claude Code"_s;
    }
    Q_UNREACHABLE();
}

} // namespace

std::vector<ServiceID> Wishes::watched() const
{
    auto services = order;
    std::erase_if(services, [this](ServiceID id) { return enabled.count(id) == 0; });
    return services;
}

Oracle::Oracle(const Timeline &timeline, Wishes wishes)
    : timeline_(timeline)
    , wishes_(std::move(wishes))
{
    promote();
}

void Oracle::beginStep()
{
    due_ = {};
    isViewDue_ = false;
}

// ---- When the program asks ----

void Oracle::programStarted()
{
    happens("the program starts");
    beginRound(loop_);
}

void Oracle::set(Alarm alarm, std::chrono::milliseconds wait)
{
    alarms_[alarm] = {timeline_.now() + wait, ++serial_};
}

void Oracle::timerFired()
{
    const auto first = std::min_element(alarms_.begin(), alarms_.end(), [](const auto &a, const auto &b) {
        return std::pair(a.second.due, a.second.serial) < std::pair(b.second.due, b.second.serial);
    });
    if (first == alarms_.end()) {
        return;
    }
    const auto alarm = first->first;
    alarms_.erase(first);
    static constexpr const char *names[] = {"a poll is due", "the settings are quiet", "the network has settled",
                                            "a second has passed"};
    const auto *name = names[static_cast<std::size_t>(alarm)];
    alarm == Alarm::poll ? note(name) : happens(name);
    switch (alarm) {
    case Alarm::settingsQuiet: restartLoop(); break;
    case Alarm::second: set(Alarm::second, 1s); break;
    case Alarm::networkSettled:
        if (!isAsleep_) {
            beginRound({});
        }
        break;
    case Alarm::poll:
        if (isAsleep_) {
            waitForNextPoll();
        } else {
            beginRound(loop_);
        }
        break;
    }
}

/// Every 20 seconds while a watched service is in trouble, else as the user wishes.
void Oracle::waitForNextPoll()
{
    const bool isUrgent = std::ranges::any_of(wishes_.watched(), [this](ServiceID id) { return isInTrouble(id); });
    set(Alarm::poll, isUrgent ? 20s : wishes_.interval == CheckInterval::oneMinute ? 60s : 300s);
}

void Oracle::restartLoop()
{
    ++loop_;
    waitForNextPoll();
}

void Oracle::beginRound(std::optional<int> loop)
{
    Round round{0, loop};
    if (!wishes_.watching) {
        // Nobody is asked, and the hero stays.
        if (loop == loop_) {
            waitForNextPoll();
        }
        return;
    }
    for (const auto id : wishes_.watched()) {
        checks_.emplace(nextCheck_++, Check{id, nextRound_, {}});
        due_.reads.push_back(id);
        ++round.open;
    }
    if (round.open == 0) {
        endRound(round);
    } else {
        rounds_.emplace(nextRound_, round);
    }
    ++nextRound_;
}

void Oracle::endRound(const Round &round)
{
    promote();
    if (round.loop == loop_) {
        waitForNextPoll();
    }
}

void Oracle::computerSleeps()
{
    happens("the computer sleeps");
    isAsleep_ = true;
}

void Oracle::computerWakes()
{
    happens("the computer wakes");
    isAsleep_ = false;
    alarms_.erase(Alarm::networkSettled);
    due_.aborts = 1;
}

void Oracle::computerWoke()
{
    beginRound({});
}

void Oracle::networkChanges()
{
    happens("the network changes");
    if (!isAsleep_ && wishes_.watching) {
        due_.aborts = 1;
    }
}

void Oracle::networkChanged()
{
    if (due_.aborts == 1 && !alarms_.contains(Alarm::networkSettled)) {
        set(Alarm::networkSettled, 2s);
    }
}

void Oracle::userChooses(const Wishes &wishes)
{
    happens("the user changes a setting");
    wishes_ = wishes;
    set(Alarm::settingsQuiet, 300ms);
    promote();
}

// ---- What the answers mean ----

ServiceStatus Oracle::recordOf(ServiceID id) const
{
    const auto found = records_.find(id);
    return found == records_.end() ? ServiceStatus{} : found->second;
}

bool Oracle::isInTrouble(ServiceID id) const
{
    return isTrouble(recordOf(id).health);
}

void Oracle::pageAnswers(int check, const StatusReading &reading)
{
    auto &asked = checks_.at(check);
    note("a page answers about", asked.service, reading.health);
    if (reading.health == ServiceHealth::operational && isInTrouble(asked.service)) {
        // Not to be believed before the service itself answers.
        asked.doubted = reading;
        due_.probes.push_back(asked.service);
        return;
    }
    conclude(check, reading, false);
}

void Oracle::probeAnswers(int check, bool isUsable)
{
    const auto &asked = checks_.at(check);
    note(isUsable ? "a probe succeeds of" : "a probe fails of", asked.service);
    conclude(check, *asked.doubted, isUsable);
}

void Oracle::conclude(int check, StatusReading reading, bool isConfirmed)
{
    const auto asked = checks_.extract(check).mapped();
    const auto wall = timeline_.wallNow();
    auto &record = records_[asked.service];
    const auto before = record;
    const bool was = isTrouble(before.health);

    record.lastChecked = wall;
    record.label = reading.label;
    if (was && reading.health == ServiceHealth::operational && !isConfirmed) {
        record.health = ServiceHealth::degraded;
        record.label = u"Recovering"_s;
    } else if (reading.health != ServiceHealth::unknown) {
        record.health = reading.health;
    }

    isViewDue_ = isViewDue_ || record.health != before.health || record.label != before.label;
    const bool is = isTrouble(record.health);
    if (!was && is) {
        record.recoveredUntil.reset();
        if (wishes_.outageAlerts) {
            alert(nameOf(asked.service) + " is down"_L1, u"We’ll notify you when it’s back."_s);
        }
        restartLoop();
    } else if (was && !is) {
        record.recoveredUntil = wall + 10min;
        alert(nameOf(asked.service) + " is back"_L1, u"You can continue working."_s);
    }

    auto &round = rounds_.at(asked.round);
    if (--round.open == 0) {
        endRound(rounds_.extract(asked.round).mapped());
    }
}

void Oracle::alert(const QString &title, const QString &body)
{
    due_.alerts.push_back({title, body});
    const QString text = title + ". "_L1 + body;
    if (wishes_.armed == RemoteChannel::slack && !wishes_.webhook.isEmpty()) {
        due_.posts.push_back({wishes_.webhook, text, {}});
    }
    if (wishes_.armed == RemoteChannel::telegram && !wishes_.token.isEmpty() && !wishes_.chat.isEmpty()) {
        due_.posts.push_back({u"https://api.telegram.org/bot%1/sendMessage"_s.arg(wishes_.token), text, wishes_.chat});
    }
}

// ---- What the user sees ----

void Oracle::popoverOpens()
{
    happens("the popover opens");
    popoverIsOpen_ = true;
    set(Alarm::second, 1s);
}

void Oracle::popoverOpened()
{
    beginRound({});
}

void Oracle::popoverCloses()
{
    happens("the popover closes");
    popoverIsOpen_ = false;
    peeked_.reset();
    alarms_.erase(Alarm::second);
    promote();
}

void Oracle::userPeeks(ServiceID id)
{
    happens("the user peeks at", id);
    if (peeked_ == id) {
        peeked_.reset();
    } else {
        peeked_ = id;
    }
}

/// First trouble, then what has just recovered, then the user's first service. Not while the user is looking.
void Oracle::promote()
{
    if (popoverIsOpen_) {
        return;
    }
    const auto watched = wishes_.watched();
    const auto before = promoted_;
    promoted_ = watched.empty() ? std::nullopt : std::optional(watched.front());
    for (auto id = watched.rbegin(); id != watched.rend(); ++id) {
        if (recordOf(*id).recoveredUntil > timeline_.wallNow()) {
            promoted_ = *id;
        }
    }
    for (auto id = watched.rbegin(); id != watched.rend(); ++id) {
        if (isInTrouble(*id)) {
            promoted_ = *id;
        }
    }
    isViewDue_ = isViewDue_ || promoted_ != before;
}

std::optional<ServiceID> Oracle::shown() const
{
    const auto watched = wishes_.watched();
    return peeked_ ? peeked_ : promoted_ ? promoted_ : watched.empty() ? std::nullopt : std::optional(watched.front());
}

View Oracle::view() const
{
    const auto watched = wishes_.watched();
    View view;
    view.hero = shown();
    view.rows = watched;
    std::erase_if(view.rows, [&view](ServiceID id) { return view.hero == id; });

    std::set<ServiceHealth> healths;
    std::optional<ServiceID> otherInTrouble;
    for (const auto id : watched) {
        healths.insert(recordOf(id).health);
        if (!otherInTrouble && id != view.hero && isInTrouble(id)) {
            otherInTrouble = id;
        }
    }
    const auto any = [&healths](ServiceHealth health) { return healths.count(health) > 0; };
    view.isPolledFast = any(ServiceHealth::outage) || any(ServiceHealth::degraded);
    view.ring = !wishes_.watching         ? RingState::inactive
        : any(ServiceHealth::outage)      ? RingState::outage
        : any(ServiceHealth::degraded)    ? RingState::recovering
        : any(ServiceHealth::operational) ? RingState::available
                                          : RingState::inactive;

    view.heading = u"Watching"_s;
    if (!view.hero) {
        view.status = u"No service selected"_s;
        view.body = u"Choose a service in Settings."_s;
    } else {
        const auto record = recordOf(*view.hero);
        const bool isRecent = record.recoveredUntil > timeline_.wallNow();
        switch (record.health) {
        case ServiceHealth::operational:
            view.status = u"Operational"_s;
            view.body = isRecent ? u"Recovered · back to normal"_s : u"Everything is working normally."_s;
            break;
        case ServiceHealth::unknown:
            view.status = u"Checking…"_s;
            view.body = u"Checking status…"_s;
            break;
        case ServiceHealth::degraded:
        case ServiceHealth::outage:
            view.status = record.health == ServiceHealth::outage ? u"Major outage"_s
                : record.label.isEmpty()                         ? u"Partial outage"_s
                                                                 : record.label;
            view.body = otherInTrouble ? nameOf(*otherInTrouble) + u" is affected too. We’ll tell you."_s
                                       : u"We’ll notify you when it’s back."_s;
            view.heading = u"Still working"_s;
            view.isPromoted = !watched.empty() && view.hero != watched.front();
            break;
        }
    }
    if (otherInTrouble) {
        view.heading = u"Also affected"_s;
    }
    return view;
}

void Oracle::happens(const char *event, std::optional<ServiceID> service)
{
    isViewDue_ = true;
    note(event, service);
}

void Oracle::note(const char *event, std::optional<ServiceID> service, std::optional<ServiceHealth> health)
{
    constexpr std::size_t remembered = 60;
    notes_.push_back({timeline_.now(), event, service, health});
    if (notes_.size() > remembered) {
        notes_.pop_front();
    }
}

QStringList Oracle::journal() const
{
    QStringList lines;
    for (const auto &[instant, event, service, health] : notes_) {
        lines.append(u"%1 s  %2 %3 %4"_s.arg(static_cast<double>(instant.count()) / 1000, 0, 'f', 3)
                         .arg(QLatin1StringView(event), service ? nameOf(*service) : QString(),
                              health ? rawValue(*health) : QString()));
    }
    return lines;
}

std::vector<Timeline::Instant> Oracle::timers() const
{
    std::vector<Timeline::Instant> instants;
    for (const auto &[alarm, time] : alarms_) {
        instants.push_back(time.due);
    }
    std::ranges::sort(instants);
    return instants;
}

} // namespace kelvo
