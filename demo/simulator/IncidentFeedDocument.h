#pragma once

#include <QByteArray>

#include <optional>

namespace kelvo {

struct SimulatedIncident;

/// Google's incident feed: the incident that goes on first, if there is one, then `endedCount` past ones of all products.
QByteArray incidentFeed(const std::optional<SimulatedIncident> &current, int endedCount);

} // namespace kelvo
