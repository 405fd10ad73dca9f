#pragma once

#include "platform/ContinuousClock.h"

#include <set>

namespace kelvo {

class NotificationObserver;

/// Deadlines on a clock that counts through sleep. Dispatch timers on the main queue wait for them.
class DispatchClock : public ContinuousClock
{
public:
    DispatchClock();
    ~DispatchClock() override;

    std::unique_ptr<Timer> after(std::chrono::milliseconds wait, std::function<void()> callback) override;

private:
    class Pending;
    void wakeUp();

    std::set<Pending *> pending_;
    std::unique_ptr<NotificationObserver> didWake_;
};

} // namespace kelvo
