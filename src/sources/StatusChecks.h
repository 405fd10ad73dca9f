#pragma once

#include "model/Service.h"
#include "model/StatusReading.h"

#include <QFuture>

namespace kelvo {

/// The two requests that the monitor makes about a service. Neither fails: a status that cannot be read has the health
/// `unknown`, and a service that does not answer is not usable.
class StatusChecks
{
public:
    StatusChecks() = default;
    StatusChecks(const StatusChecks &) = delete;
    StatusChecks &operator=(const StatusChecks &) = delete;
    virtual ~StatusChecks() = default;

    /// Reads the service's status from its source.
    virtual QFuture<StatusReading> read(const Service &service) = 0;
    /// Whether the service itself answers, with any HTTP status below 500.
    virtual QFuture<bool> probe(const Service &service) = 0;
    /// Ends every request that is under way as failed, at once. A request that begins afterwards opens a connection of its
    /// own.
    virtual void abortAll() = 0;
};

} // namespace kelvo
