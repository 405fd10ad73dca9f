#pragma once

#include "platform/ContinuousClock.h"

#include <set>

namespace kelvo {

class NotificationObserver;

/// Deadlines on the clock that counts through sleep, waited for with dispatch timers on the main queue.
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
