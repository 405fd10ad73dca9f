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
    // The round may restart the poll loop before it returns: its end continues only the loop that began it.
    auto next = whileAlive(loop_.get(), [this] { wait(); });
    // A round that was cancelled, or that carries an exception, is over too.
    round().onFailed([] { }).onCanceled([] { }).then(std::move(next));
}

} // namespace kelvo
