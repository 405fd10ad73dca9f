#pragma once

#include "platform/ContinuousClock.h"

#include <QFuture>
#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

namespace kelvo {

/// Waits, runs a round, waits again. The wait is asked for afresh each time and begins when the round before it ended.
class PollLoop
{
public:
    /// The work; finishes when all of it is done.
    using Round = std::function<QFuture<void>()>;

    /// `nextWait` gives the wait before each `round`.
    PollLoop(ContinuousClock &clock, std::function<std::chrono::seconds()> nextWait, Round round);
    ~PollLoop();

    /// Ends the current loop and starts a new one, with a wait. A round under way goes on to its end, but what follows
    /// it is the new loop's.
    void restart();
    /// The same, but the new loop begins with `firstRound`.
    void restart(const Round &firstRound);

private:
    void begin();
    void wait();
    void run(const Round &round);

    ContinuousClock &clock_;
    std::function<std::chrono::seconds()> nextWait_;
    Round round_;
    std::unique_ptr<QObject> loop_; ///< the life of the current loop; what waits for a round of it ends with it
    std::unique_ptr<ContinuousClock::Timer> timer_;
};

} // namespace kelvo
