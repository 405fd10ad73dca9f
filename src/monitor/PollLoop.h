#pragma once

#include "platform/ContinuousClock.h"

#include <QFuture>
#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

namespace kelvo {

/// Waits, runs a round, and waits again. Each wait starts when the previous round has ended, even if the future of the
/// round is cancelled or holds an exception.
class PollLoop
{
public:
    /// Starts one round of work. The future finishes when the round has ended.
    using Round = std::function<QFuture<void>()>;

    /// The loop calls `nextWait` before each wait for its length. Nothing runs until `restart` is called.
    PollLoop(ContinuousClock &clock, std::function<std::chrono::seconds()> nextWait, Round round);
    ~PollLoop();

    /// Stops the current loop and starts a new one with a wait. A running round is not interrupted; its end does not
    /// start another wait.
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
    std::unique_ptr<QObject> loop_; ///< the context of the current loop's continuations; replaced at each restart
    std::unique_ptr<ContinuousClock::Timer> timer_;
};

} // namespace kelvo
