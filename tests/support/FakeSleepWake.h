#pragma once

#include "platform/SleepWake.h"

namespace kelvo {

/// A machine that a test puts to sleep and wakes.
class FakeSleepWake : public SleepWake
{
public:
    void sleep() { Q_EMIT willSleep(); }
    void wake() { Q_EMIT didWake(); }
};

} // namespace kelvo
