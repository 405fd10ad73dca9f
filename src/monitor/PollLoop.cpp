#include "monitor/PollLoop.h"

#include "model/WhileAlive.h"

namespace kelvo {

PollLoop::PollLoop(ContinuousClock &clock, std::function<std::chrono::seconds()> nextWait,
                   std::function<QFuture<void>()> round)
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

void PollLoop::restart(QFuture<void> firstRound)
{
    begin();
    waitAfter(firstRound);
}

void PollLoop::begin()
{
    ++generation_;
    loop_ = std::make_unique<QObject>();
    timer_.reset();
}

void PollLoop::wait()
{
    timer_ = clock_.after(nextWait_(), [this] {
        // The round may restart this loop; its end then belongs to a loop that is gone.
        const auto generation = generation_;
        const auto round = round_();
        if (generation == generation_) {
            waitAfter(round);
        }
    });
}

void PollLoop::waitAfter(QFuture<void> round)
{
    round.then(whileAlive(loop_.get(), [this] { wait(); }));
}

} // namespace kelvo
