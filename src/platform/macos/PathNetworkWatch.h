#pragma once

#include "platform/NetworkWatch.h"

#include <memory>

namespace kelvo {

/// Watches the network with the path monitor of the Network framework.
class PathNetworkWatch : public NetworkWatch
{
    Q_OBJECT

public:
    PathNetworkWatch();
    ~PathNetworkWatch() override;

private:
    class Monitor;
    std::unique_ptr<Monitor> monitor_;
};

} // namespace kelvo
