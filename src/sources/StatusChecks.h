#pragma once

#include "model/Service.h"
#include "model/StatusReading.h"

#include <QFuture>

namespace kelvo {

/// The two requests that the monitor makes for a service. Their futures never hold an exception: a status that cannot
/// be read gives the health `unknown`, and a probe without a response gives false.
class StatusChecks
{
public:
    StatusChecks() = default;
    StatusChecks(const StatusChecks &) = delete;
    StatusChecks &operator=(const StatusChecks &) = delete;
    virtual ~StatusChecks() = default;

    /// Reads the status of the service from its source.
    virtual QFuture<StatusReading> read(const Service &service) = 0;
    /// Requests the probe address of the service. Gives true when it responds with an HTTP status below 500.
    virtual QFuture<bool> probe(const Service &service) = 0;
    /// Fails all pending requests at once. Later requests open new connections.
    virtual void abortAll() = 0;
};

} // namespace kelvo
