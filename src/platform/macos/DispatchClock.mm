#include "platform/macos/DispatchClock.h"

#include "platform/macos/NotificationObserver.h"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <ctime>
#include <utility>

namespace kelvo {

namespace {

using std::chrono::nanoseconds;

// What mach_continuous_time counts, in nanoseconds: it goes on through sleep and never steps.
nanoseconds continuousNow()
{
    return nanoseconds(static_cast<nanoseconds::rep>(::clock_gettime_nsec_np(CLOCK_MONOTONIC_RAW)));
}

} // namespace

// A dispatch timer counts either the time that the machine is up, and so comes too late by every sleep, or civil time,
// and so moves when somebody sets the clock. This takes the first, and arms it afresh after each sleep with what is left.
class DispatchClock::Pending : public ContinuousClock::Timer
{
public:
    // Strict, because the system otherwise puts off the timers of an application without windows.
    Pending(DispatchClock &clock, nanoseconds wait, std::function<void()> callback)
        : clock_(clock)
        , deadline_(continuousNow() + std::max(wait, nanoseconds::zero()))
        , callback_(std::move(callback))
        , source_(
              dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, DISPATCH_TIMER_STRICT, dispatch_get_main_queue()))
    {
        clock_.pending_.insert(this);
        Pending *self = this;
        dispatch_source_set_event_handler(source_, ^{ self->expire(); });
        arm();
        dispatch_activate(source_);
    }

    // On the queue that it fires on, a cancelled source fires no more.
    ~Pending() override
    {
        dispatch_source_cancel(source_);
        clock_.pending_.erase(this);
    }

    void arm()
    {
        const nanoseconds left = std::max(deadline_ - continuousNow(), nanoseconds::zero());
        dispatch_source_set_timer(source_, dispatch_time(DISPATCH_TIME_NOW, left.count()), DISPATCH_TIME_FOREVER, 0);
    }

private:
    void expire()
    {
        if (continuousNow() < deadline_) {
            arm();
            return;
        }
        dispatch_source_cancel(source_);
        // The call may destroy this.
        const auto callback = std::exchange(callback_, nullptr);
        if (callback) {
            callback();
        }
    }

    DispatchClock &clock_;
    nanoseconds deadline_;
    std::function<void()> callback_;
    dispatch_source_t source_;
};

DispatchClock::DispatchClock()
    : didWake_(std::make_unique<NotificationObserver>(NSWorkspace.sharedWorkspace.notificationCenter,
                                                      NSWorkspaceDidWakeNotification, [this] { wakeUp(); }))
{
}

DispatchClock::~DispatchClock() = default;

std::unique_ptr<ContinuousClock::Timer> DispatchClock::after(std::chrono::milliseconds wait,
                                                             std::function<void()> callback)
{
    return std::make_unique<Pending>(*this, wait, std::move(callback));
}

void DispatchClock::wakeUp()
{
    for (Pending *pending : pending_) {
        pending->arm();
    }
}

} // namespace kelvo
