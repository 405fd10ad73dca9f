#include "platform/macos/DispatchClock.h"

#include "platform/macos/NotificationObserver.h"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <ctime>
#include <utility>

namespace kelvo {

namespace {

using std::chrono::nanoseconds;

// The value of mach_continuous_time in nanoseconds. It counts through sleep and never steps.
nanoseconds continuousNow()
{
    return nanoseconds(static_cast<nanoseconds::rep>(::clock_gettime_nsec_np(CLOCK_MONOTONIC_RAW)));
}

} // namespace

// A dispatch timer counts either uptime, which stops during sleep, or wall clock time, which steps when the clock is
// set. This class uses uptime and sets the timer again after each sleep, with the remaining time.
class DispatchClock::Pending : public ContinuousClock::Timer
{
public:
    // DISPATCH_TIMER_STRICT, because the system otherwise delays the timers of an application without windows.
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

    // The destructor runs on the queue of the source, so the source does not fire after this cancellation.
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
        // The callback may destroy this object, so it is moved out of it first.
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
