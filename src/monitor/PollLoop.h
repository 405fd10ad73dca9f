#pragma once

#include "platform/ContinuousClock.h"

#include <QFuture>
#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

namespace kelvo {

/// Waits, runs a round, and waits again. Each wait begins when the round before it has ended, however it ended.
class PollLoop
{
public:
    /// Starts the work; the future finishes when all of it is done.
    using Round = std::function<QFuture<void>()>;

    /// `nextWait` gives the wait before each `round`.
    PollLoop(ContinuousClock &clock, std::function<std::chrono::seconds()> nextWait, Round round);
    ~PollLoop();

    /// Ends the current loop and starts a new one with a wait. A round that is under way runs to its end, but no wait
    /// follows it.
    void restart();
    /// Like `restart()`, but the new loop starts with `firstRound`.
    void restart(const Round &firstRound);

private:
    void begin();
    void wait();
    void run(const Round &round);

    ContinuousClock &clock_;
    std::function<std::chrono::seconds()> nextWait_;
    Round round_;
    std::unique_ptr<QObject> loop_; ///< lives as long as the current loop, and guards its continuations
    std::unique_ptr<ContinuousClock::Timer> timer_;
};

} // namespace kelvo
