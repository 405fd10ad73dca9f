#pragma once

#include "model/ServiceHealth.h"

#include <QString>

namespace kelvo {

/// The result of reading a status source once.
struct StatusReading
{
    ServiceHealth health;
    QString label; ///< short text for the user

    bool operator==(const StatusReading &) const = default;
};

} // namespace kelvo
