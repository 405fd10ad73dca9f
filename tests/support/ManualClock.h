#pragma once

#include "platform/ContinuousClock.h"
#include "platform/WallClock.h"

#include <map>
#include <tuple>

namespace kelvo {

/// A clock that moves only when a test advances it. It also provides the wall clock, which advances with it.
class ManualClock : public ContinuousClock
{
public:
    ManualClock();

    std::unique_ptr<Timer> after(std::chrono::milliseconds wait, std::function<void()> callback) override;

    /// Advances the time by `duration` and makes the calls that become due, in order of their times. Calls `settle`
    /// before the first and after each of them.
    void advance(std::chrono::milliseconds duration);
    /// Steps only the wall clock, as when the user sets the time.
    void stepWallClock(std::chrono::milliseconds by) { wallOffset_ += by; }

    TimePoint now() const { return start_ + elapsed_ + wallOffset_; }
    WallClock wallClock() const
    {
        return [this] { return now(); };
    }
    /// The number of pending calls.
    std::size_t pendingCount() const { return pending_.size(); }
    /// The number of calls made so far.
    std::size_t firedCount() const { return fired_; }

private:
    struct Key
    {
        std::chrono::milliseconds due;
        unsigned long serial;
        // Not defaulted: older versions of libc++ have no three-way comparison of durations.
        bool operator<(const Key &other) const { return std::tie(due, serial) < std::tie(other.due, other.serial); }
    };
    class Pending;

    TimePoint start_;
    std::chrono::milliseconds elapsed_{0};
    std::chrono::milliseconds wallOffset_{0};
    unsigned long serial_ = 0;
    std::size_t fired_ = 0;
    std::map<Key, std::function<void()>> pending_;
};

/// Processes pending events and deferred deletions eight times, so that chains of continuations run: each continuation
/// may finish the next future. Does not wait for events that arrive later.
void settle();

} // namespace kelvo
