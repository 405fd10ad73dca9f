#pragma once

#include "platform/ContinuousClock.h"

namespace kelvo {

/// A clock that runs faster than the one that it is made from, so that minutes can be shown in seconds.
class AcceleratedClock : public ContinuousClock
{
public:
    AcceleratedClock(std::unique_ptr<ContinuousClock> clock, int factor)
        : clock_(std::move(clock))
        , factor_(factor)
    {
    }

    std::unique_ptr<Timer> after(std::chrono::milliseconds wait, std::function<void()> callback) override
    {
        return clock_->after(wait / factor_, std::move(callback));
    }

private:
    std::unique_ptr<ContinuousClock> clock_;
    int factor_;
};

} // namespace kelvo
