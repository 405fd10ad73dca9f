#pragma once

#include "platform/ContinuousClock.h"
#include "platform/WallClock.h"

#include <map>

namespace kelvo {

/// A clock that stands still until a test moves it. It is the wall clock too: both tell the same time.
class ManualClock : public ContinuousClock
{
public:
    ManualClock();

    std::unique_ptr<Timer> after(std::chrono::milliseconds wait, std::function<void()> callback) override;

    /// Moves on by `duration` and makes the calls that fall due, in the order of their times, delivering pending events
    /// of the event loop before the first and after each.
    void advance(std::chrono::milliseconds duration);
    /// Steps the wall clock alone, as a user who sets the time does.
    void stepWallClock(std::chrono::milliseconds by) { wallOffset_ += by; }

    TimePoint now() const { return start_ + elapsed_ + wallOffset_; }
    WallClock wallClock() const
    {
        return [this] { return now(); };
    }
    /// How many calls are pending.
    std::size_t pendingCount() const { return pending_.size(); }
    /// How many calls this clock has made so far.
    std::size_t firedCount() const { return fired_; }

private:
    struct Key
    {
        std::chrono::milliseconds due;
        unsigned long serial;
        auto operator<=>(const Key &) const = default;
    };
    class Pending;

    TimePoint start_;
    std::chrono::milliseconds elapsed_{0};
    std::chrono::milliseconds wallOffset_{0};
    unsigned long serial_ = 0;
    std::size_t fired_ = 0;
    std::map<Key, std::function<void()>> pending_;
};

/// Delivers events until none is pending: the continuations of finished futures run.
void settle();

} // namespace kelvo
