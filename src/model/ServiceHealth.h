#pragma once

#include "model/RawValues.h"

namespace kelvo {

/// A service's condition. No order of severity is meant.
enum class ServiceHealth {
    operational, ///< the source reports the service working normally
    degraded,    ///< partial trouble, or a recovery that the service itself has not confirmed yet
    outage,      ///< a major outage
    unknown,     ///< the status could not be read or interpreted
};

/// A health is written as the name of its case.
template<>
inline constexpr auto rawValueTable<ServiceHealth> = std::to_array<RawValue<ServiceHealth, QStringView>>({
    {ServiceHealth::operational, u"operational"},
    {ServiceHealth::degraded, u"degraded"},
    {ServiceHealth::outage, u"outage"},
    {ServiceHealth::unknown, u"unknown"},
});

/// Whether the service is in trouble. `unknown` is not: a page that cannot be read says nothing about the service.
constexpr bool isAffected(ServiceHealth health)
{
    return health == ServiceHealth::degraded || health == ServiceHealth::outage;
}

} // namespace kelvo
