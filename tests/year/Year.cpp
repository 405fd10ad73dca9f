#include "Year.h"

#include "support/ManualClock.h"

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::array troubles{ServiceHealth::degraded, ServiceHealth::outage};

QString namesOf(const std::vector<ServiceID> &services)
{
    QStringList names;
    for (const auto id : services) {
        names.append(rawValue(id));
    }
    return u"["_s + names.join(u", "_s) + u"]"_s;
}

QString textOf(const Deeds &deeds)
{
    QStringList lines{u"reads "_s + namesOf(deeds.reads), u"probes "_s + namesOf(deeds.probes)};
    for (const auto &alert : deeds.alerts) {
        lines.append(u"alerts “%1. %2”"_s.arg(alert.title, alert.body));
    }
    for (const auto &post : deeds.posts) {
        lines.append(u"posts “%1” to %2 %3"_s.arg(post.text, post.address, post.chat));
    }
    lines.append(u"gives up what is open: %1 times"_s.arg(deeds.aborts));
    return lines.join(u"; "_s);
}

QString textOf(const std::optional<TimePoint> &time)
{
    return time ? QString::number(time->time_since_epoch() / 1ms) : u"never"_s;
}

QString textOf(const ServiceStatus &status)
{
    return u"%1 “%2” checked %3, recovered until %4"_s.arg(rawValue(status.health), status.label,
                                                           textOf(status.lastChecked), textOf(status.recoveredUntil));
}

QString textOf(const View &view)
{
    return u"hero %1%2, “%3”, “%4”, “%5”, rows %6, ring %7, polled fast: %8"_s
        .arg(view.hero ? rawValue(*view.hero) : u"none"_s, view.isPromoted ? u" (promoted)"_s : QString(), view.status,
             view.body, view.heading, namesOf(view.rows))
        .arg(static_cast<int>(view.ring))
        .arg(view.isPolledFast);
}

QString textOf(const std::vector<Timeline::Instant> &instants)
{
    QStringList texts;
    for (const auto instant : instants) {
        texts.append(QString::number(static_cast<double>(instant.count()) / 1000, 'f', 3));
    }
    return texts.join(u", "_s);
}

View viewOf(const StatusStore &store)
{
    View view;
    if (const auto hero = store.hero()) {
        view.hero = hero->id;
    }
    view.isPromoted = store.heroIsPromoted();
    view.status = store.heroStatusLabel();
    view.body = store.heroBodyLine();
    view.heading = store.groupHeading();
    for (const auto &service : store.groupRows()) {
        view.rows.push_back(service.id);
    }
    view.ring = store.ringState();
    view.isPolledFast = store.anyOutage();
    return view;
}

} // namespace

Year::Program::Program(Year &year)
    : settings(year.preferences_, year.loginItem_)
    , session(receivers(year.posts_, year.random_), NotifierStore::limits)
    , notifier(settings, year.center_, session)
    , store(settings, notifier, year.vendors_, year.timeline_, year.sleepWake_, year.networkWatch_,
            year.timeline_.wallClock())
{
}

Year::Year(std::uint32_t seed)
    : random_(seed)
    , vendors_(timeline_, random_, [this] { compare(); })
{
    start();
    wishes_.enabled = {allServiceIDs.begin(), allServiceIDs.end()};
    wishes_.outageAlerts = true;
    oracle_->userChooses(wishes_);
    program_->settings.setEnabledServices(wishes_.enabled);
    oracle_->userChooses(wishes_);
    program_->settings.setOutageAlertsEnabled(true);
    compare();

    for (const auto id : allServiceIDs) {
        timeline_.in(random_.between(1min, 4 * 24h), [this, id] { haveIncident(id); });
    }
    timeline_.in(random_.between(1h, 16h), [this] { sleepNowAndThen(); });
    timeline_.in(random_.between(1h, 40h), [this] { loseNetworkNowAndThen(); });
    timeline_.in(random_.between(1h, 40h), [this] { setClockNowAndThen(); });
    timeline_.in(random_.between(1h, 40h), [this] { changeSettingsNowAndThen(); });
    timeline_.in(random_.between(1min, 5h), [this] { openPopoverNowAndThen(); });
    timeline_.in(random_.between(10 * 24h, 40 * 24h), [this] { restartNowAndThen(); });
    timeline_.in(random_.between(1h, 10 * 24h), [this] { wakeWithoutSleep(); });
}

Year::~Year() = default;

QString Year::liveThrough(int day)
{
    const auto end = day * Timeline::Instant(24h);
    while (complaint_.isEmpty() && (timeline_.now() < end || !isAtRest())) {
        switch (timeline_.runNext(end + 24h)) {
        case Timeline::Ran::nothing: complain(u"Nothing is to come any more"_s); break;
        case Timeline::Ran::worldEvent: break;
        case Timeline::Ran::programTimer:
            oracle_->timerFired();
            compare();
            break;
        }
    }
    settle();
    return complaint_;
}

QStringList Year::journal() const
{
    return oracle_->journal();
}

qsizetype Year::objectCount() const
{
    return program_->settings.findChildren<QObject *>().size() + program_->session.findChildren<QObject *>().size()
        + program_->notifier.findChildren<QObject *>().size() + program_->store.findChildren<QObject *>().size();
}

bool Year::isAtRest() const
{
    return !vendors_.isAnythingOpen() && !popoverIsOpen_ && !isAsleep_ && timeline_.programTimers().size() == 1;
}

// ---- The program ----

void Year::start()
{
    ++tally_.starts;
    program_.reset();
    told_.clear();
    oracle_ = std::make_unique<Oracle>(timeline_, wishes_);
    vendors_.setOracle(oracle_.get());
    program_ = std::make_unique<Program>(*this);
    oracle_->programStarted();
    compare();
}

void Year::restartNowAndThen()
{
    if (!isAsleep_ && !popoverIsOpen_) {
        start();
    }
    timeline_.in(random_.between(10 * 24h, 40 * 24h), [this] { restartNowAndThen(); });
}

// ---- The services ----

void Year::haveIncident(ServiceID id)
{
    play(id, incident());
}

/// Chooses what happens to a service, phase by phase.
std::vector<Year::Phase> Year::incident()
{
    std::vector<Phase> phases;
    const auto add = [&phases](std::chrono::milliseconds length, ServiceHealth page, bool isUsable) {
        phases.push_back({length, {page, isUsable}});
    };
    constexpr auto operational = ServiceHealth::operational;
    switch (random_.below(6)) {
    case 0: // A plain outage.
        add(random_.between(1min, 40min), random_.oneOf(troubles), random_.once(2));
        break;
    case 1: // The page says that it is over, the service says no.
        add(random_.between(1min, 20min), random_.oneOf(troubles), false);
        add(random_.between(10s, 20min), operational, false);
        break;
    case 2: // The page never admits it.
        add(random_.between(1min, 3h), operational, false);
        break;
    case 3: // Page and service flap.
        for (int times = random_.below(40); times >= 0; --times) {
            add(random_.between(1s, 90s), random_.once(2) ? operational : random_.oneOf(troubles), !random_.once(3));
        }
        break;
    case 4: // From bad to worse and back.
        for (int times = random_.below(6); times >= 0; --times) {
            add(random_.between(10s, 10min), random_.oneOf(troubles), random_.once(2));
        }
        break;
    case 5: // The page cannot be read, before and after.
        add(random_.between(1min, 20min), ServiceHealth::unknown, true);
        add(random_.between(1min, 20min), random_.oneOf(troubles), false);
        add(random_.between(1min, 20min), ServiceHealth::unknown, random_.once(2));
        break;
    }
    return phases;
}

void Year::play(ServiceID id, const std::vector<Phase> &phases)
{
    if (phases.empty()) {
        vendors_.of(id) = {};
        timeline_.in(random_.between(0ms, 25s), [this] { lookAgainAndAgain(); });
        timeline_.in(random_.between(1h, 9 * 24h), [this, id] { haveIncident(id); });
        return;
    }
    vendors_.of(id) = phases.front().state;
    // The user notices that something has changed and looks.
    if (random_.once(3)) {
        timeline_.in(random_.between(0ms, 25s), [this] { lookAgainAndAgain(); });
    }
    timeline_.in(phases.front().length,
                 [this, id, rest = std::vector(phases.begin() + 1, phases.end())] { play(id, rest); });
}

// ---- The computer ----

void Year::sleepNowAndThen()
{
    if (random_.once(4)) {
        changeNetwork(); // the computer is taken along
    }
    ++tally_.sleeps;
    isAsleep_ = true;
    oracle_->computerSleeps();
    sleepWake_.sleep();
    compare();
    const auto length = random_.once(3) ? random_.between(1s, 30min) : random_.between(3h, 11h);
    if (random_.once(3)) {
        // It announces sleep and does not suspend.
        timeline_.in(length, [this] { wake(); });
    } else {
        // It suspends. What became due meanwhile runs before the wake-up is announced, or after.
        timeline_.jumpTo(timeline_.now() + length);
        if (random_.once(2)) {
            wake();
        } else {
            timeline_.in(0s, [this] { wake(); });
        }
    }
}

void Year::wake()
{
    isAsleep_ = false;
    oracle_->computerWakes();
    sleepWake_.wake();
    oracle_->computerWoke();
    compare();
    for (int times = random_.below(3); times > 0; --times) {
        timeline_.in(random_.between(0ms, 6s), [this] { changeNetwork(); });
    }
    timeline_.in(random_.once(4) ? random_.between(1s, 5min) : random_.between(1h, 16h), [this] { sleepNowAndThen(); });
}

/// The service that announces sleep has crashed.
void Year::wakeWithoutSleep()
{
    if (!isAsleep_) {
        oracle_->computerWakes();
        sleepWake_.wake();
        oracle_->computerWoke();
        compare();
    }
    timeline_.in(random_.between(1h, 20 * 24h), [this] { wakeWithoutSleep(); });
}

void Year::loseNetworkNowAndThen()
{
    const auto comeBack = [this] {
        vendors_.isOnline = true;
        changeNetwork();
        for (int more = random_.below(5); more > 0; --more) {
            timeline_.in(random_.between(1ms, 4s), [this] { changeNetwork(); });
        }
        timeline_.in(random_.between(1min, 30h), [this] { loseNetworkNowAndThen(); });
    };
    if (random_.once(3)) {
        comeBack(); // another network, without a gap
    } else {
        vendors_.isOnline = false;
        timeline_.in(random_.between(1s, 1h), comeBack);
    }
}

void Year::changeNetwork()
{
    ++tally_.networkChanges;
    oracle_->networkChanges();
    networkWatch_.change();
    oracle_->networkChanged();
    compare();
}

void Year::setClockNowAndThen()
{
    ++tally_.clockSteps;
    static constexpr std::array<std::chrono::milliseconds, 5> sizes{900ms, 45s, 9min, 1h, 50h};
    const auto size = random_.oneOf(sizes);
    timeline_.stepWallClock(random_.between(-size, size));
    compare();
    timeline_.in(random_.between(1min, 4 * 24h), [this] { setClockNowAndThen(); });
}

// ---- The user ----

void Year::changeSettingsNowAndThen()
{
    auto wait = 0ms;
    for (int more = random_.below(12); more >= 0; --more) {
        timeline_.in(wait, [this] { changeSetting(); });
        wait += random_.between(0ms, 700ms);
    }
    timeline_.in(random_.between(10s, 50h), [this] { changeSettingsNowAndThen(); });
}

void Year::changeSetting()
{
    ++tally_.settingsChanges;
    auto &settings = program_->settings;
    const auto tell = [this] { oracle_->userChooses(wishes_); };
    switch (random_.below(13)) {
    case 0:
        random_.shuffle(wishes_.order);
        tell();
        settings.setServiceOrder(wishes_.order);
        break;
    case 1: { // A service twice, as in a settings file that was edited by hand; or once again.
        if (wishes_.order.size() == allServiceIDs.size()) {
            wishes_.order.push_back(random_.oneOf(allServiceIDs));
        } else {
            wishes_.order.assign(allServiceIDs.begin(), allServiceIDs.end());
        }
        tell();
        settings.setServiceOrder(wishes_.order);
        break;
    }
    case 2:
    case 3:
        wishes_.enabled.insert(random_.oneOf(allServiceIDs));
        wishes_.enabled.insert(random_.oneOf(allServiceIDs));
        tell();
        settings.setEnabledServices(wishes_.enabled);
        break;
    case 4:
        if (random_.once(8)) {
            wishes_.enabled.clear();
        } else {
            wishes_.enabled.erase(random_.oneOf(allServiceIDs));
        }
        tell();
        settings.setEnabledServices(wishes_.enabled);
        break;
    case 5: {
        const auto id = random_.oneOf(allServiceIDs);
        std::erase(wishes_.order, id);
        wishes_.order.insert(wishes_.order.begin(), id);
        wishes_.enabled.insert(id);
        tell();
        settings.setPrimary(id);
        break;
    }
    case 6: setWatching(!random_.once(3)); break;
    case 7:
        wishes_.interval = random_.once(5) ? CheckInterval::oneMinute : CheckInterval::fiveMinutes;
        tell();
        settings.setCheckInterval(wishes_.interval);
        break;
    case 8:
        wishes_.outageAlerts = !random_.once(4);
        tell();
        settings.setOutageAlertsEnabled(wishes_.outageAlerts);
        break;
    case 9:
        wishes_.armed = random_.oneOf(allRemoteChannels);
        tell();
        settings.setArmedChannel(wishes_.armed);
        break;
    case 10:
        wishes_.webhook = random_.once(4) ? QString() : u"https://hooks.slack.com/services/%1"_s.arg(random_.below(9));
        tell();
        settings.setSlackWebhookURL(wishes_.webhook);
        break;
    case 11:
        wishes_.token = random_.once(4) ? QString() : u"%1:secret"_s.arg(random_.below(9));
        tell();
        settings.setTelegramBotToken(wishes_.token);
        wishes_.chat = random_.once(4) ? QString() : u"-%1"_s.arg(random_.below(9));
        tell();
        settings.setTelegramChatID(wishes_.chat);
        break;
    case 12:
        // What does not concern the monitor starts its wait again, too.
        tell();
        settings.setSlackChannelLabel(u"#%1"_s.arg(random_.below(9)));
        tell();
        settings.setHasOnboarded(true);
        tell();
        settings.setLaunchAtLogin(random_.once(2));
        break;
    }
    compare();
}

void Year::setWatching(bool watching)
{
    wishes_.watching = watching;
    oracle_->userChooses(wishes_);
    program_->settings.setWatchOnThisMac(watching);
    if (!watching) {
        timeline_.in(random_.between(1s, 10h), [this] {
            setWatching(true);
            compare();
        });
    }
}

void Year::openPopoverNowAndThen()
{
    lookAgainAndAgain();
    timeline_.in(random_.between(2min, 14h), [this] { openPopoverNowAndThen(); });
}

/// Opens the popover, sometimes several times and faster than the answers come.
void Year::lookAgainAndAgain()
{
    if (isAsleep_ || isLooking_) {
        return;
    }
    isLooking_ = true;
    auto wait = 0ms;
    for (int times = random_.once(2) ? random_.below(6) : 0; times >= 0; --times) {
        timeline_.in(wait, [this] { openPopover(); });
        const auto length = random_.between(200ms, times > 0 ? 3s : 60s);
        for (int peeks = random_.below(4); peeks > 0; --peeks) {
            timeline_.in(wait + random_.between(0ms, length), [this] { peek(); });
        }
        wait += length;
        timeline_.in(wait, [this] { closePopover(); });
        wait += random_.between(1ms, 1s);
    }
    timeline_.in(wait, [this] { isLooking_ = false; });
}

void Year::openPopover()
{
    ++tally_.openings;
    popoverIsOpen_ = true;
    oracle_->popoverOpens();
    program_->store.setPopoverIsOpen(true);
    compare();
    oracle_->popoverOpened();
    program_->store.checkAll();
    compare();
}

void Year::closePopover()
{
    popoverIsOpen_ = false;
    oracle_->popoverCloses();
    program_->store.setPopoverIsOpen(false);
    compare();
}

void Year::peek()
{
    const auto rows = oracle_->view().rows;
    if (!popoverIsOpen_ || rows.empty()) {
        return;
    }
    ++tally_.peeks;
    const auto id = random_.oneOf(rows);
    oracle_->userPeeks(id);
    program_->store.peek(id);
    compare();
}

// ---- The comparison ----

void Year::compare()
{
    ++tally_.steps;
    if (!center_.notifications.empty() || !oracle_->due().alerts.empty()) {
        settle();
    }
    auto deeds = vendors_.takeDeeds();
    for (const auto &notification : center_.notifications) {
        deeds.alerts.push_back({notification.title, notification.body});
    }
    center_.notifications.clear();
    deeds.posts = std::exchange(posts_, {});
    tally_.posts += static_cast<int>(deeds.posts.size());

    if (deeds != oracle_->due()) {
        complain(u"It %1\ninstead: %2"_s.arg(textOf(deeds), textOf(oracle_->due())));
    }
    audit(deeds);
    if (const auto timers = timeline_.programTimers(); timers != oracle_->timers()) {
        complain(u"It waits until %1 instead of %2"_s.arg(textOf(timers), textOf(oracle_->timers())));
    }
    compareState();
    oracle_->beginStep();
}

void Year::compareState()
{
    const auto &store = program_->store;
    if (!oracle_->isViewDue()) {
        return;
    }
    if (static_cast<std::size_t>(store.statuses().size()) != oracle_->records().size()) {
        complain(u"It has %1 records instead of %2"_s.arg(store.statuses().size()).arg(oracle_->records().size()));
    }
    for (const auto &[id, record] : oracle_->records()) {
        if (const auto status = store.status(id); status != record) {
            complain(u"Of %1 it knows: %2\ninstead of: %3"_s.arg(rawValue(id), textOf(status), textOf(record)));
        }
    }
    if (const auto view = viewOf(store), right = oracle_->view(); view != right) {
        complain(u"It shows %1\ninstead of %2"_s.arg(textOf(view), textOf(right)));
    }
}

/// Checks the alerts once more, by the answers alone.
void Year::audit(const Deeds &deeds)
{
    std::set<ServiceID> confirmed;
    std::set<ServiceID> reported;
    for (const auto &[service, content] : vendors_.takeAnswers()) {
        if (const auto *isUsable = std::get_if<bool>(&content)) {
            if (*isUsable) {
                confirmed.insert(service);
            }
        } else if (isAffected(std::get<ServiceHealth>(content))) {
            reported.insert(service);
            told_[service].troubleOnPage = true;
        }
    }
    for (const auto &alert : deeds.alerts) {
        const auto name = alert.title.left(alert.title.lastIndexOf(" is "_L1));
        const auto service = std::ranges::find(Service::catalog(), name, &Service::name);
        if (service == Service::catalog().end()) {
            complain(u"“%1” names no service"_s.arg(alert.title));
            continue;
        }
        auto &told = told_[service->id];
        if (alert.title.endsWith(" is back"_L1)) {
            ++tally_.recoveryAlerts;
            if (!told.troubleOnPage || confirmed.count(service->id) == 0) {
                complain(u"“%1” is false"_s.arg(alert.title));
            }
            told = {};
        } else {
            ++tally_.outageAlerts;
            if (told.isDown || reported.count(service->id) == 0) {
                complain(u"“%1” is %2"_s.arg(alert.title, told.isDown ? u"told twice"_s : u"false"_s));
            }
            told.isDown = true;
        }
    }
}

void Year::complain(const QString &what)
{
    if (complaint_.isEmpty()) {
        complaint_ = u"%1 s: %2"_s.arg(static_cast<double>(timeline_.now().count()) / 1000, 0, 'f', 3).arg(what);
    }
}

} // namespace kelvo
