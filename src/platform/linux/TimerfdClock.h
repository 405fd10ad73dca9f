#pragma once

#include "platform/ContinuousClock.h"

namespace kelvo {

/// A clock on CLOCK_BOOTTIME, which counts through suspend. A pending call uses one file descriptor and does not wake
/// the process before it is due. When the kernel refuses the descriptor, a QTimer is used instead; it does not count
/// suspend.
class TimerfdClock : public ContinuousClock
{
public:
    std::unique_ptr<Timer> after(std::chrono::milliseconds wait, std::function<void()> callback) override;
};

} // namespace kelvo
