#pragma once

#include "platform/NetworkWatch.h"

namespace kelvo {

/// Reports a network change when a test says so.
class FakeNetworkWatch : public NetworkWatch
{
public:
    void change() { Q_EMIT changed(); }
};

} // namespace kelvo
