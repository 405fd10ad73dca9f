#pragma once

#include "model/RawValues.h"

namespace kelvo {

/// The health of a service. The order of the cases has no meaning.
enum class ServiceHealth {
    operational, ///< the source reports that the service works normally
    degraded,    ///< a partial outage, or a recovery that the probe has not confirmed yet
    outage,      ///< a major outage
    unknown,     ///< the status could not be read or interpreted
};

/// The raw value of a health is the name of its case.
template<>
inline constexpr auto rawValueTable<ServiceHealth> = std::to_array<RawValue<ServiceHealth, QStringView>>({
    {ServiceHealth::operational, u"operational"},
    {ServiceHealth::degraded, u"degraded"},
    {ServiceHealth::outage, u"outage"},
    {ServiceHealth::unknown, u"unknown"},
});

/// Whether the service is affected: degraded or outage. `unknown` is not affected, because it says nothing about the
/// service.
constexpr bool isAffected(ServiceHealth health)
{
    return health == ServiceHealth::degraded || health == ServiceHealth::outage;
}

} // namespace kelvo
