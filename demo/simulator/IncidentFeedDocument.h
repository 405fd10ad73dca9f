#pragma once

#include <QByteArray>

#include <optional>

namespace kelvo {

struct SimulatedIncident;

/// Returns Google's incident feed as JSON: the current incident, if any, then `endedCount` ended ones of all products.
QByteArray incidentFeed(const std::optional<SimulatedIncident> &current, int endedCount);

} // namespace kelvo
