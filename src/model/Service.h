#pragma once

#include "model/ServiceID.h"
#include "model/StatusSource.h"

#include <QUrl>

#include <vector>

namespace kelvo {

/// What there is to know about a service that can be watched.
struct Service
{
    ServiceID id;
    QString name; ///< as shown to the user
    StatusSource source;
    QUrl probeURL; ///< answers when the service itself is usable

    bool operator==(const Service &) const = default;

    /// The eight services, in the order of ServiceID.
    static const std::vector<Service> &catalog();
    /// The service of that id; every id has one.
    static const Service &by(ServiceID id);
};

size_t qHash(const Service &service, size_t seed = 0);

} // namespace kelvo
