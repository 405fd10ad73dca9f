#include "monitor/PollLoop.h"

#include "WhileAlive.h"

namespace kelvo {

PollLoop::PollLoop(ContinuousClock &clock, std::function<std::chrono::seconds()> nextWait, Round round)
    : clock_(clock)
    , nextWait_(std::move(nextWait))
    , round_(std::move(round))
{
}

PollLoop::~PollLoop() = default;

void PollLoop::restart()
{
    begin();
    wait();
}

void PollLoop::restart(const Round &firstRound)
{
    begin();
    run(firstRound);
}

void PollLoop::begin()
{
    loop_ = std::make_unique<QObject>();
    timer_.reset();
}

void PollLoop::wait()
{
    timer_ = clock_.after(nextWait_(), [this] { run(round_); });
}

void PollLoop::run(const Round &round)
{
    // The round may restart the poll loop before it returns. `next` is therefore bound to the loop that started the
    // round, and does nothing when that loop is gone.
    auto next = whileAlive(loop_.get(), [this] { wait(); });
    // A round whose future is cancelled or holds an exception has ended as well.
    round().onFailed([] { }).onCanceled([] { }).then(std::move(next));
}

} // namespace kelvo
