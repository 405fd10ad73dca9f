#pragma once

#include "platform/ContinuousClock.h"

namespace kelvo {

/// Divides every wait by `factor`, so that the demo shows minutes in seconds.
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
