#include "monitor/PollLoop.h"

#include "support/ManualClock.h"

#include <QException>
#include <QPromise>
#include <QTest>

#include <optional>
#include <vector>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A poll loop that waits one minute. The test ends its rounds.
struct World
{
    QFuture<void> begin()
    {
        rounds.emplace_back().start();
        return rounds.back().future();
    }

    ManualClock clock;
    std::vector<QPromise<void>> rounds;
    PollLoop loop{clock, [] { return 60s; }, [this] { return begin(); }};
};

enum class End { finished, cancelled, abandoned, exception };

} // namespace

class PollLoopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLoopContinuesHoweverARoundEnds_data();
    void theLoopContinuesHoweverARoundEnds();
    void aRoundOfAnEarlierLoopStartsNoWait();
};

void PollLoopTest::theLoopContinuesHoweverARoundEnds_data()
{
    QTest::addColumn<End>("end");
    QTest::newRow("finished") << End::finished;
    QTest::newRow("cancelled") << End::cancelled;
    QTest::newRow("promise destroyed") << End::abandoned;
    QTest::newRow("exception") << End::exception;
}

void PollLoopTest::theLoopContinuesHoweverARoundEnds()
{
    QFETCH(End, end);
    World world;
    world.loop.restart();
    for (std::size_t count = 1; count <= 3; ++count) {
        world.clock.advance(60s);
        QCOMPARE(world.rounds.size(), count);
        auto &round = world.rounds.back();
        switch (end) {
        case End::finished: round.finish(); break;
        case End::cancelled:
            round.future().cancel();
            round.finish();
            break;
        case End::abandoned: round = QPromise<void>(); break;
        case End::exception:
            round.setException(QException());
            round.finish();
            break;
        }
        settle();
        QCOMPARE(world.clock.pendingCount(), 1U);
    }
}

void PollLoopTest::aRoundOfAnEarlierLoopStartsNoWait()
{
    World world;
    world.loop.restart();
    world.clock.advance(60s);
    QCOMPARE(world.rounds.size(), 1U);
    world.loop.restart();
    QCOMPARE(world.clock.pendingCount(), 1U);
    world.rounds.front().finish();
    settle();
    QCOMPARE(world.clock.pendingCount(), 1U);
}

QTEST_GUILESS_MAIN(PollLoopTest)
#include "tst_pollloop.moc"
