#include "MonitorWorld.h"

#include <QTest>

#include <array>
#include <random>

using namespace kelvo;
using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace {

constexpr auto never = milliseconds::max();

/// A status request for a service.
struct Check
{
    milliseconds at;
    ServiceID service;

    bool operator==(const Check &) const = default;
};

/// The random times at which each service is down: outages of seconds to hours, half an hour to days apart.
class Outages
{
public:
    explicit Outages(unsigned seed, milliseconds end)
    {
        std::mt19937 random(seed);
        std::uniform_int_distribution apart(30 * 60, 40 * 3600);
        std::uniform_int_distribution lasting(10, 3 * 3600);
        for (auto &service : times_) {
            for (milliseconds at{0}; at < end;) {
                at += std::chrono::seconds(apart(random));
                service.push_back(at);
                at += std::chrono::seconds(lasting(random));
                service.push_back(at);
            }
        }
    }

    bool isDown(ServiceID id, milliseconds at) const
    {
        const auto &times = times_[static_cast<std::size_t>(id)];
        return (std::upper_bound(times.begin(), times.end(), at) - times.begin()) % 2 != 0;
    }

private:
    std::array<std::vector<milliseconds>, allServiceIDs.size()> times_; ///< begin, end, begin, end, …
};

/// A reference model of the schedule. It computes when rounds must begin and how many timers fire: the wait is 20 seconds
/// while a watched service is affected, and the user's interval otherwise. The wait restarts when an outage begins and
/// 300 ms after a settings change. Nothing is checked during sleep or while watching is off; waking up and opening the
/// popover start a round. Answers take no time.
class Calendar
{
public:
    explicit Calendar(const Outages &outages)
        : outages_(outages)
    {
    }

    std::vector<ServiceID> watched;
    milliseconds interval{60s};
    bool isWatching = true;
    bool isAsleep = false;

    std::vector<Check> checks;
    std::size_t timersGoneOff = 0;
    std::size_t timersAreSet() const { return 1U + (settingsRest_ != never ? 1U : 0U) + (tick_ != never ? 1U : 0U); }

    void start()
    {
        round();
        beginWait();
    }
    void settingsChange() { settingsRest_ = now_ + 300ms; }
    void wake()
    {
        isAsleep = false;
        round();
    }
    void openPopover()
    {
        tick_ = now_ + 1s;
        round();
    }
    void closePopover() { tick_ = never; }

    /// Returns false when two timers are due at the same time, because their order is not specified.
    bool advance(milliseconds duration)
    {
        const auto end = now_ + duration;
        for (;;) {
            const auto next = std::min({due_, settingsRest_, tick_});
            if (next > end) {
                now_ = end;
                return true;
            }
            if ((next == due_) + (next == settingsRest_) > 1) {
                return false;
            }
            now_ = next;
            ++timersGoneOff;
            if (next == tick_) {
                tick_ += 1s;
            } else if (next == settingsRest_) {
                settingsRest_ = never;
                beginWait();
            } else {
                if (!isAsleep) {
                    round();
                }
                beginWait();
            }
        }
    }

private:
    bool isTrouble() const
    {
        return std::any_of(watched.begin(), watched.end(), [this](ServiceID id) { return down_[index(id)]; });
    }
    void beginWait() { due_ = now_ + (isTrouble() ? milliseconds(20s) : interval); }

    void round()
    {
        if (!isWatching) {
            return;
        }
        bool begins = false;
        for (const auto id : watched) {
            checks.push_back({now_, id});
            const bool isDown = outages_.isDown(id, now_);
            begins = begins || (isDown && !down_[index(id)]);
            down_[index(id)] = isDown;
        }
        if (begins) {
            beginWait();
        }
    }

    static std::size_t index(ServiceID id) { return static_cast<std::size_t>(id); }

    const Outages &outages_;
    std::array<bool, allServiceIDs.size()> down_{};
    milliseconds now_{0};
    milliseconds due_ = never;
    milliseconds settingsRest_ = never;
    milliseconds tick_ = never;
};

} // namespace

class SchedulingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void roundsBeginOnTimeThroughWeeksOfUse_data();
    void roundsBeginOnTimeThroughWeeksOfUse();
    void noTimerFiresBetweenTheRoundsOfAQuietWeek_data();
    void noTimerFiresBetweenTheRoundsOfAQuietWeek();
};

void SchedulingTest::roundsBeginOnTimeThroughWeeksOfUse_data()
{
    QTest::addColumn<CheckInterval>("interval");
    QTest::addColumn<unsigned>("seed");
    QTest::newRow("every minute") << CheckInterval::oneMinute << 20260105U;
    QTest::newRow("every five minutes") << CheckInterval::fiveMinutes << 8311U;
    QTest::newRow("every five minutes, another user") << CheckInterval::fiveMinutes << 77U;
}

void SchedulingTest::roundsBeginOnTimeThroughWeeksOfUse()
{
    QFETCH(CheckInterval, interval);
    QFETCH(unsigned, seed);
    constexpr milliseconds end = std::chrono::weeks(4);
    std::mt19937 random(seed);
    const auto draw = [&random](int from, int to) { return std::uniform_int_distribution(from, to)(random); };

    const Outages outages(seed + 1, end + 48h);
    MonitorWorld world;
    world.settings.setCheckInterval(interval);
    const auto start = world.clock.now();
    milliseconds now{0};
    std::vector<Check> checks;
    world.checks.readScript = [&](ServiceID id) {
        const auto at = std::chrono::duration_cast<milliseconds>(world.clock.now() - start);
        checks.push_back({at, id});
        return StatusReading{outages.isDown(id, at) ? ServiceHealth::outage : ServiceHealth::operational, {}};
    };
    world.checks.probeScript = [](ServiceID) { return true; };

    Calendar calendar(outages);
    calendar.interval = duration(interval);
    calendar.watched = {ServiceID::claude};
    calendar.start();
    world.start();

    const auto compare = [&] {
        QCOMPARE(world.clock.firedCount(), calendar.timersGoneOff);
        QCOMPARE(world.clock.pendingCount(), calendar.timersAreSet());
        QVERIFY(checks == calendar.checks);
        QVERIFY(world.checks.open(FakeStatusChecks::Kind::read).empty());
        checks.clear();
        calendar.checks.clear();
    };
    const auto pass = [&](milliseconds time) {
        now += time;
        QVERIFY2(calendar.advance(time), "choose another seed");
        world.clock.advance(time);
        compare();
    };
    const auto change = [&](auto write) {
        write();
        calendar.settingsChange();
    };

    std::size_t events = 0;
    while (now < end && !QTest::currentTestFailed()) {
        ++events;
        switch (draw(0, 6)) {
        case 0: // the machine sleeps
            world.sleepWake.sleep();
            calendar.isAsleep = true;
            pass(milliseconds(draw(1, 10 * 3600 * 1000)));
            world.sleepWake.wake();
            calendar.wake();
            break;
        case 1: // settings change in quick succession
            for (int i = draw(1, 40); i > 0; --i) {
                change([&] { world.settings.setSlackChannelLabel(QString::number(i)); });
                pass(milliseconds(draw(1, 450)));
            }
            break;
        case 2: // other services are watched
            calendar.watched.clear();
            for (const auto id : allServiceIDs) {
                if (draw(0, 3) == 0) {
                    calendar.watched.push_back(id);
                }
            }
            change([&] { world.settings.setEnabledServices({calendar.watched.begin(), calendar.watched.end()}); });
            break;
        case 3:
            calendar.isWatching = !calendar.isWatching || draw(0, 2) > 0;
            change([&] { world.settings.setWatchOnThisMac(calendar.isWatching); });
            break;
        case 4: // the popover is opened for a while
            world.store->setPopoverIsOpen(true);
            world.store->checkAll();
            calendar.openPopover();
            pass(milliseconds(draw(1, 90'000)));
            world.store->setPopoverIsOpen(false);
            calendar.closePopover();
            break;
        default: pass(milliseconds(draw(1, 8 * 3600 * 1000)));
        }
        pass(milliseconds(draw(1, 20'000)));
    }
    QVERIFY(events > 100);
    QVERIFY(world.store->statuses().size() <= static_cast<qsizetype>(allServiceIDs.size()));
}

void SchedulingTest::noTimerFiresBetweenTheRoundsOfAQuietWeek_data()
{
    QTest::addColumn<CheckInterval>("interval");
    QTest::addColumn<std::size_t>("rounds");
    QTest::newRow("every minute") << CheckInterval::oneMinute << std::size_t(7 * 24 * 60);
    QTest::newRow("every five minutes") << CheckInterval::fiveMinutes << std::size_t(7 * 24 * 12);
}

void SchedulingTest::noTimerFiresBetweenTheRoundsOfAQuietWeek()
{
    QFETCH(CheckInterval, interval);
    QFETCH(std::size_t, rounds);
    MonitorWorld world;
    world.settings.setCheckInterval(interval);
    world.checks.readScript = [](ServiceID) { return StatusReading{ServiceHealth::operational, {}}; };
    world.start();
    world.clock.advance(std::chrono::weeks(1));
    QCOMPARE(world.clock.firedCount(), rounds);
    QCOMPARE(world.checks.asked().size(), rounds + 1);
    QCOMPARE(world.clock.pendingCount(), std::size_t(1));
    QVERIFY(world.alerts().isEmpty());
}

QTEST_GUILESS_MAIN(SchedulingTest)
#include "tst_scheduling.moc"
