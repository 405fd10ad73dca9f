#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace kelvo {

/// A monotonic clock that keeps counting while the machine sleeps. It calls functions after a wait.
class ContinuousClock
{
public:
    /// A pending call. Destroying the timer cancels the call. The callback may destroy its own timer.
    class Timer
    {
    public:
        Timer() = default;
        Timer(const Timer &) = delete;
        Timer &operator=(const Timer &) = delete;
        virtual ~Timer() = default;
    };

    ContinuousClock() = default;
    ContinuousClock(const ContinuousClock &) = delete;
    ContinuousClock &operator=(const ContinuousClock &) = delete;
    virtual ~ContinuousClock() = default;

    /// Calls `callback` once, `wait` from now, from the event loop of the calling thread; never from inside this
    /// function. The wait is not coalesced with other timers. When it ends while the machine sleeps, the call is made
    /// as soon as the machine is awake. The clock must outlive the returned timer.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(std::chrono::milliseconds wait,
                                                       std::function<void()> callback) = 0;
};

} // namespace kelvo
