#include "MonitorWorld.h"

#include <QTest>

#include <array>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The answers of one round: the health on the status page, and whether the probe succeeds.
struct Look
{
    ServiceHealth page;
    bool isUsable;
};

constexpr std::array looks{
    Look{ServiceHealth::operational, true}, Look{ServiceHealth::operational, false},
    Look{ServiceHealth::degraded, true},    Look{ServiceHealth::outage, true},
    Look{ServiceHealth::unknown, true},
};

/// A reference model of the alerts: whether the user believes that the service is down.
class User
{
public:
    /// The title of the alert that this look must raise; empty for none.
    QString hears(const Look &look, bool outageAlerts)
    {
        const bool pageSaysTrouble = look.page == ServiceHealth::degraded || look.page == ServiceHealth::outage;
        const bool isBack = down_ && look.page == ServiceHealth::operational && look.isUsable;
        const bool isDown = !down_ && pageSaysTrouble;
        if (isBack) {
            down_ = false;
            return u"Claude is back"_s;
        }
        if (isDown) {
            down_ = true;
            return outageAlerts ? u"Claude is down"_s : QString();
        }
        return {};
    }
    bool isDown() const { return down_; }

private:
    bool down_ = false;
};

/// Plays looks to a real monitor, one per round, and compares its alerts with the model.
class Telling
{
public:
    Telling(MonitorWorld &world, bool outageAlerts)
        : world_(world)
        , outageAlerts_(outageAlerts)
    {
        world_.settings.setOutageAlertsEnabled(outageAlerts);
        world_.center.notifications.clear();
        world_.checks.readScript = [this](ServiceID) { return StatusReading{look_.page, {}}; };
        world_.checks.probeScript = [this](ServiceID) {
            ++probes_;
            return look_.isUsable;
        };
    }

    ~Telling() { world_.store.reset(); }

    bool tell(const Look &look)
    {
        look_ = look;
        probes_ = 0;
        const bool mustProbe = user_.isDown() && look.page == ServiceHealth::operational;
        const auto heard = world_.center.notifications.size();
        if (world_.store) {
            world_.store->checkAll();
        } else {
            world_.start();
        }
        const auto mustHear = user_.hears(look, outageAlerts_);
        const auto &alerts = world_.center.notifications;
        const bool hearsThat = mustHear.isEmpty() ? alerts.size() == heard
                                                  : alerts.size() == heard + 1 && alerts.back().title == mustHear;
        return hearsThat && probes_ == (mustProbe ? 1 : 0) && world_.store->anyOutage() == user_.isDown();
    }

private:
    MonitorWorld &world_;
    bool outageAlerts_;
    Look look_ = looks[0];
    int probes_ = 0;
    User user_;
};

QByteArray text(const std::vector<std::size_t> &story)
{
    QByteArray digits;
    for (const auto look : story) {
        digits.append(QByteArray::number(static_cast<int>(look))).append(' ');
    }
    return digits;
}

/// Returns a sequence that contains every word of `length` looks exactly once (a De Bruijn sequence), so that a single
/// run of the monitor covers all of them.
std::vector<std::size_t> everyWord(std::size_t length)
{
    std::vector<std::size_t> walk;
    std::vector<std::size_t> word(length + 1, 0);
    const std::function<void(std::size_t, std::size_t)> extend = [&](std::size_t position, std::size_t period) {
        if (position > length) {
            if (length % period == 0) {
                walk.insert(walk.end(), word.begin() + 1, word.begin() + 1 + static_cast<std::ptrdiff_t>(period));
            }
            return;
        }
        word[position] = word[position - period];
        extend(position + 1, period);
        for (auto next = word[position - period] + 1; next < looks.size(); ++next) {
            word[position] = next;
            extend(position + 1, position);
        }
    };
    extend(1, 1);
    walk.insert(walk.end(), length - 1, 0);
    return walk;
}

} // namespace

class StoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySequenceFromTheStartRaisesTheRightAlerts_data();
    void everySequenceFromTheStartRaisesTheRightAlerts();
    void everySequenceWithinALongRunRaisesTheRightAlerts_data();
    void everySequenceWithinALongRunRaisesTheRightAlerts();
    void everyOutageIsFollowedByOneRecovery();
};

void StoryTest::everySequenceFromTheStartRaisesTheRightAlerts_data()
{
    QTest::addColumn<bool>("outageAlerts");
    QTest::newRow("outage alerts on") << true;
    QTest::newRow("outage alerts off") << false;
}

void StoryTest::everySequenceFromTheStartRaisesTheRightAlerts()
{
    QFETCH(bool, outageAlerts);
    constexpr std::size_t length = 5;
    MonitorWorld world;
    std::vector<std::size_t> story(length, 0);
    int stories = 0;
    for (bool more = true; more;) {
        Telling telling(world, outageAlerts);
        for (const auto look : story) {
            QVERIFY2(telling.tell(looks[look]), text(story).constData());
        }
        ++stories;
        more = false;
        for (auto &look : story) {
            look = (look + 1) % looks.size();
            if (look != 0) {
                more = true;
                break;
            }
        }
    }
    QCOMPARE(stories, 5 * 5 * 5 * 5 * 5);
}

void StoryTest::everySequenceWithinALongRunRaisesTheRightAlerts_data()
{
    everySequenceFromTheStartRaisesTheRightAlerts_data();
}

void StoryTest::everySequenceWithinALongRunRaisesTheRightAlerts()
{
    QFETCH(bool, outageAlerts);
    const auto walk = everyWord(6);
    QCOMPARE(walk.size(), std::size_t(5 * 5 * 5 * 5 * 5 * 5 + 5));
    MonitorWorld world;
    Telling telling(world, outageAlerts);
    for (std::size_t i = 0; i < walk.size(); ++i) {
        if (!telling.tell(looks[walk[i]])) {
            const auto from = walk.begin() + static_cast<std::ptrdiff_t>(i > 10 ? i - 10 : 0);
            QFAIL(text({from, walk.begin() + static_cast<std::ptrdiff_t>(i) + 1}).constData());
        }
    }
}

void StoryTest::everyOutageIsFollowedByOneRecovery()
{
    MonitorWorld world;
    {
        Telling telling(world, true);
        for (const auto look : everyWord(4)) {
            QVERIFY(telling.tell(looks[look]));
        }
        telling.tell({ServiceHealth::operational, true});
    }
    const auto alerts = world.alerts();
    QVERIFY(alerts.size() > 100);
    for (qsizetype i = 0; i < alerts.size(); ++i) {
        QCOMPARE(alerts.at(i), i % 2 == 0 ? u"Claude is down"_s : u"Claude is back"_s);
    }
    QCOMPARE(alerts.size() % 2, 0);
}

QTEST_GUILESS_MAIN(StoryTest)
#include "tst_story.moc"
