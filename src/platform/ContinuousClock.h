#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace kelvo {

/// A monotonic clock that keeps counting while the machine sleeps, and makes one-shot calls.
class ContinuousClock
{
public:
    /// A pending call. Destroying it cancels the call; destroying it from inside the call is allowed.
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

    /// Calls `callback` once on the calling thread's event loop, `wait` from now, without tolerance and never from
    /// inside this function. A wait that ends while the machine sleeps fires promptly after it wakes.
    /// The clock must outlive the returned timer.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(std::chrono::milliseconds wait,
                                                       std::function<void()> callback) = 0;
};

} // namespace kelvo
