#pragma once

#include "platform/ContinuousClock.h"

namespace kelvo {

/// The kernel's clock that counts through suspend. A pending call costs one file descriptor, and no wake-up before it
/// is due. Where the kernel refuses one, a call waits on an ordinary timer instead, which stands still during suspend.
class TimerfdClock : public ContinuousClock
{
public:
    std::unique_ptr<Timer> after(std::chrono::milliseconds wait, std::function<void()> callback) override;
};

} // namespace kelvo
