#pragma once

#include "platform/ContinuousClock.h"
#include "platform/WallClock.h"

#include <map>
#include <set>
#include <tuple>
#include <vector>

namespace kelvo {

/// The time of a simulated year: the timers of the program and the events of the world around it, in one order. The wall
/// clock runs beside it and can be set.
class Timeline : public ContinuousClock
{
public:
    using Instant = std::chrono::milliseconds; ///< since the beginning

    std::unique_ptr<Timer> after(std::chrono::milliseconds wait, std::function<void()> callback) override;
    /// Adds an event of the world.
    void at(Instant due, std::function<void()> event);
    void in(std::chrono::milliseconds wait, std::function<void()> event) { at(now_ + wait, std::move(event)); }

    /// What `runNext` has run.
    enum class Ran { nothing, worldEvent, programTimer };
    /// Advances to the next event or timer that is due before `end` and runs it. What became due in a jump runs late.
    Ran runNext(Instant end);
    /// Advances without running anything, like a computer that is suspended.
    void jumpTo(Instant instant) { now_ = instant; }
    void stepWallClock(std::chrono::milliseconds by) { wallOffset_ += by; }

    Instant now() const { return now_; }
    TimePoint wallNow() const
    {
        return TimePoint(std::chrono::sys_days{std::chrono::January / 5 / 2026} + now_ + wallOffset_);
    }
    WallClock wallClock() const
    {
        return [this] { return wallNow(); };
    }
    /// When the pending timers of the program are due, in order.
    std::vector<Instant> programTimers() const;
    std::size_t pendingCount() const { return pending_.size(); }

private:
    struct Key
    {
        Instant due;
        unsigned long serial;
        bool operator<(const Key &other) const { return std::tie(due, serial) < std::tie(other.due, other.serial); }
    };
    struct Entry
    {
        std::function<void()> run;
        bool isOfProgram;
    };
    class Pending;

    Instant now_{0};
    std::chrono::milliseconds wallOffset_{0};
    unsigned long serial_ = 0;
    std::map<Key, Entry> pending_;
    std::set<Key> programTimers_; ///< the keys in `pending_` that are timers of the program
};

} // namespace kelvo
