#pragma once

#include "platform/NetworkWatch.h"

#include <memory>

namespace kelvo {

/// The network as the system's path monitor tells of it.
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
