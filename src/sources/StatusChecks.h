#pragma once

#include "model/Service.h"
#include "model/StatusReading.h"

#include <QFuture>

#include <chrono>

namespace kelvo {

/// The questions that can be asked about a service. None of them ever fails: a status that cannot be read is the
/// health `unknown`, and a service that does not answer is not usable.
class StatusChecks
{
public:
    StatusChecks() = default;
    StatusChecks(const StatusChecks &) = delete;
    StatusChecks &operator=(const StatusChecks &) = delete;
    virtual ~StatusChecks() = default;

    /// Reads the status page at the origin `base` for the components of those names.
    virtual QFuture<StatusReading> checkStatuspage(const QString &base, const QStringList &componentNames) = 0;
    /// Reads Google's incident feed for the product of that title.
    virtual QFuture<StatusReading> checkGoogleDashboard(const QString &product) = 0;
    /// Whether the service itself answers, with any HTTP status below 500.
    virtual QFuture<bool> probe(const Service &service) = 0;
    /// Nothing will be asked for that long. Leave to let go of what is only kept for the next question.
    virtual void restFor(std::chrono::milliseconds duration) = 0;
};

} // namespace kelvo
