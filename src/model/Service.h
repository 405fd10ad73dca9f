#pragma once

#include "model/ServiceID.h"
#include "model/StatusSource.h"

#include <QUrl>

#include <vector>

namespace kelvo {

/// A service that can be watched: its name, its status source and its probe.
struct Service
{
    ServiceID id;
    QString name; ///< shown to the user
    StatusSource source;
    QUrl probeURL; ///< an address of the service itself; it responds with a status below 500 when the service is usable

    bool operator==(const Service &) const = default;

    /// The eight services, in the order of ServiceID.
    static const std::vector<Service> &catalog();
    /// Returns the service with this id. Every id has one.
    static const Service &by(ServiceID id);
};

size_t qHash(const Service &service, size_t seed = 0);

} // namespace kelvo
