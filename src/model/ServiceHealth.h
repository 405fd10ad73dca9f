#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace kelvo {

/// A service's condition. No order of severity is meant.
enum class ServiceHealth {
    operational, ///< the source reports the service working normally
    degraded,    ///< partial trouble, or a recovery that the service itself has not confirmed yet
    outage,      ///< a major outage
    unknown,     ///< the status could not be read or interpreted
};

inline constexpr std::array allServiceHealths{ServiceHealth::operational, ServiceHealth::degraded,
                                              ServiceHealth::outage, ServiceHealth::unknown};

/// The text that stands for a health: the case's name.
QString rawValue(ServiceHealth health);
/// The health that `raw` stands for, compared exactly; nothing for any other text.
std::optional<ServiceHealth> serviceHealthFromRawValue(QStringView raw);

/// Whether the service is in trouble. `unknown` is not: a page that cannot be read says nothing about the service.
constexpr bool isAffected(ServiceHealth health)
{
    return health == ServiceHealth::degraded || health == ServiceHealth::outage;
}

} // namespace kelvo
