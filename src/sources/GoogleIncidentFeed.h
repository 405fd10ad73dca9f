#pragma once

#include "model/StatusReading.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace kelvo::GoogleIncidentFeed {

/// Returns the reading for `product` from the body of the incident feed of Google's apps status dashboard. The first
/// incident in the feed that names the product and has no "end" decides; without one, the product is operational.
/// An incident whose product list is missing or malformed is skipped.
/// Returns nullopt when `body` is not a JSON array of objects.
std::optional<StatusReading> reading(const QByteArray &body, const QString &product);

} // namespace kelvo::GoogleIncidentFeed
