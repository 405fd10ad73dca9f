#pragma once

#include "platform/SleepWake.h"

namespace kelvo {

/// Emits the sleep and wake signals when a test says so.
class FakeSleepWake : public SleepWake
{
public:
    void sleep() { Q_EMIT willSleep(); }
    void wake() { Q_EMIT didWake(); }
};

} // namespace kelvo
