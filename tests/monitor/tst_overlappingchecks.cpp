#include "MonitorWorld.h"

#include <QTest>

#include <map>
#include <set>
#include <variant>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto claude = ServiceID::claude;
constexpr ServiceHealth healths[] = {ServiceHealth::operational, ServiceHealth::degraded, ServiceHealth::outage,
                                     ServiceHealth::unknown};
using Kind = FakeStatusChecks::Kind;

// The events of a sequence. Checks are numbered in the order in which they begin.
struct CheckBegins
{
    bool operator==(const CheckBegins &) const = default;
};
struct PageAnswers
{
    int check;
    ServiceHealth health;
    bool operator==(const PageAnswers &) const = default;
};
struct ServiceAnswers
{
    int check;
    bool isUsable;
    bool operator==(const ServiceAnswers &) const = default;
};
using Event = std::variant<CheckBegins, PageAnswers, ServiceAnswers>;
using Story = std::vector<Event>;

QString text(const Story &story)
{
    QStringList words;
    for (const auto &event : story) {
        if (const auto *page = std::get_if<PageAnswers>(&event)) {
            words.append(u"page %1 says %2"_s.arg(page->check).arg(static_cast<int>(page->health)));
        } else if (const auto *service = std::get_if<ServiceAnswers>(&event)) {
            words.append(u"service %1 says %2"_s.arg(service->check).arg(service->isUsable));
        } else {
            words.append(u"check begins"_s);
        }
    }
    return words.join(u", "_s);
}

/// Derives the expected alerts from the answers in the order in which they arrive: an affected status after an
/// unaffected one begins an outage, and an operational status that the probe confirms ends it.
class Listener
{
public:
    QStringList alerts;
    bool inTrouble = false;

    /// Returns whether the service must be probed now.
    bool hearPage(ServiceHealth health)
    {
        if (inTrouble && health == ServiceHealth::operational) {
            return true;
        }
        if (health != ServiceHealth::unknown) {
            hear(health != ServiceHealth::operational);
        }
        return false;
    }

    void hearService(bool isUsable) { hear(inTrouble && !isUsable); }

private:
    void hear(bool trouble)
    {
        if (trouble != inTrouble) {
            inTrouble = trouble;
            alerts.append(trouble ? u"Claude is down"_s : u"Claude is back"_s);
        }
    }
};

/// One run of the real monitor. Check 0 is its first round.
class Run
{
public:
    explicit Run(MonitorWorld &world)
        : world_(world)
    {
        world_.center.notifications.clear();
        world_.start();
        begun();
    }

    ~Run()
    {
        world_.store.reset();
        for (const auto kind : {Kind::read, Kind::probe}) {
            for (const auto question : world_.checks.open(kind)) {
                world_.checks.drop(question);
            }
        }
    }

    void happen(const Event &event)
    {
        if (const auto *page = std::get_if<PageAnswers>(&event)) {
            const auto askedBefore = world_.checks.asked().size();
            world_.checks.answerRead(pages_.at(page->check), {page->health, {}});
            pages_.erase(page->check);
            if (world_.checks.asked().size() > askedBefore) {
                services_.emplace(page->check, askedBefore);
            }
        } else if (const auto *service = std::get_if<ServiceAnswers>(&event)) {
            world_.checks.answerProbe(services_.at(service->check), service->isUsable);
            services_.erase(service->check);
        } else {
            world_.store->checkAll();
            begun();
        }
    }

    bool isServiceAsked(int check) const { return services_.contains(check); }
    QStringList alerts() const { return world_.alerts(); }
    ServiceHealth health() const { return world_.health(claude); }

    /// All events that are possible next.
    Story next(int checks) const
    {
        Story events;
        if (checksBegun_ < checks) {
            events.push_back(CheckBegins{});
        }
        for (const auto &[check, question] : pages_) {
            for (const auto health : healths) {
                events.push_back(PageAnswers{check, health});
            }
        }
        for (const auto &[check, question] : services_) {
            events.push_back(ServiceAnswers{check, true});
            events.push_back(ServiceAnswers{check, false});
        }
        return events;
    }

private:
    void begun() { pages_.emplace(checksBegun_++, world_.checks.asked().size() - 1); }

    MonitorWorld &world_;
    int checksBegun_ = 0;
    std::map<int, FakeStatusChecks::Number> pages_;    ///< open, by check
    std::map<int, FakeStatusChecks::Number> services_; ///< open, by check
};

/// Describes how the run differs from the expectation; empty when it does not.
QString fault(const Run &run, const Listener &listener, const Event &last, const QStringList &alertsBefore)
{
    if (run.alerts() != listener.alerts) {
        return u"told %1 instead of %2"_s.arg(run.alerts().join(u", "_s), listener.alerts.join(u", "_s));
    }
    if (isAffected(run.health()) != listener.inTrouble) {
        return u"holds the health %1"_s.arg(static_cast<int>(run.health()));
    }
    for (qsizetype i = 0; i < run.alerts().size(); ++i) {
        if (run.alerts().at(i) != (i % 2 == 0 ? u"Claude is down"_s : u"Claude is back"_s)) {
            return u"an alert twice: %1"_s.arg(run.alerts().join(u", "_s));
        }
    }
    if (run.alerts().size() > alertsBefore.size() && run.alerts().last() == u"Claude is back"_s) {
        const auto *service = std::get_if<ServiceAnswers>(&last);
        if (!service || !service->isUsable) {
            return u"back without the service's own word"_s;
        }
    }
    return {};
}

} // namespace

class OverlappingChecksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyOrderOfAnswersRaisesTheRightAlerts_data();
    void everyOrderOfAnswersRaisesTheRightAlerts();
};

void OverlappingChecksTest::everyOrderOfAnswersRaisesTheRightAlerts_data()
{
    QTest::addColumn<int>("checks");
    QTest::addColumn<Story>("beginning");
    QTest::addColumn<int>("stories");
    const auto first = [](ServiceHealth health) { return Story{PageAnswers{0, health}}; };
    QTest::newRow("two from the start") << 2 << Story{} << 54;
    // The following begin after a first check that was answered.
    QTest::newRow("two more, in trouble") << 3 << first(ServiceHealth::outage) << 123;
    QTest::newRow("three more, in trouble") << 4 << first(ServiceHealth::degraded) << 6873;
    QTest::newRow("three more, all is well") << 4 << first(ServiceHealth::operational) << 1734;
    QTest::newRow("three more, nothing known") << 4 << first(ServiceHealth::unknown) << 1734;
}

/// Visits all sequences depth first. An event cannot be undone, so each sequence is replayed from its start.
void OverlappingChecksTest::everyOrderOfAnswersRaisesTheRightAlerts()
{
    QFETCH(int, checks);
    QFETCH(Story, beginning);
    QFETCH(int, stories);
    MonitorWorld world;
    world.settings.setOutageAlertsEnabled(true);

    int told = 0;
    std::vector<Story> untold{beginning};
    while (!untold.empty()) {
        Story story = std::move(untold.back());
        untold.pop_back();
        Run run(world);
        Listener listener;
        for (std::size_t step = 0;; ++step) {
            if (step == story.size()) {
                auto choices = run.next(checks);
                if (choices.empty()) {
                    break;
                }
                for (std::size_t other = 1; other < choices.size(); ++other) {
                    untold.push_back(story);
                    untold.back().push_back(choices[other]);
                }
                story.push_back(choices.front());
            }
            const auto &event = story[step];
            const auto alertsBefore = run.alerts();
            run.happen(event);
            if (const auto *page = std::get_if<PageAnswers>(&event)) {
                const bool mustAsk = listener.hearPage(page->health);
                QVERIFY2(run.isServiceAsked(page->check) == mustAsk, qPrintable(text(story)));
            } else if (const auto *service = std::get_if<ServiceAnswers>(&event)) {
                listener.hearService(service->isUsable);
            }
            const auto found = fault(run, listener, event, alertsBefore);
            const auto end = story.begin() + static_cast<std::ptrdiff_t>(step) + 1;
            QVERIFY2(found.isEmpty(), qPrintable(found + u": "_s + text({story.begin(), end})));
        }
        ++told;
    }
    QCOMPARE(told, stories);
}

QTEST_GUILESS_MAIN(OverlappingChecksTest)
#include "tst_overlappingchecks.moc"
