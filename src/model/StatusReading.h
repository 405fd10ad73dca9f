#pragma once

#include "model/ServiceHealth.h"

#include <QString>

namespace kelvo {

/// What one look at a status source gave.
struct StatusReading
{
    ServiceHealth health;
    QString label; ///< short text for the user

    bool operator==(const StatusReading &) const = default;
};

} // namespace kelvo
