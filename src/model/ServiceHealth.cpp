#include "model/ServiceHealth.h"

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

QString rawValue(ServiceHealth health)
{
    switch (health) {
    case ServiceHealth::operational: return u"operational"_s;
    case ServiceHealth::degraded: return u"degraded"_s;
    case ServiceHealth::outage: return u"outage"_s;
    case ServiceHealth::unknown: return u"unknown"_s;
    }
    Q_UNREACHABLE();
}

std::optional<ServiceHealth> serviceHealthFromRawValue(QStringView raw)
{
    const auto found = std::find_if(allServiceHealths.begin(), allServiceHealths.end(),
                                    [&](ServiceHealth health) { return rawValue(health) == raw; });
    if (found == allServiceHealths.end()) {
        return std::nullopt;
    }
    return *found;
}

} // namespace kelvo
