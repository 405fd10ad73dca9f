#pragma once

#include "model/StatusReading.h"

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace kelvo::GoogleIncidentFeed {

/// The reading for `product` from the body of the incident feed of Google's apps status dashboard: the first current
/// incident that names the product decides. An incident that is malformed is passed over.
/// Nothing when the body is no JSON or no array of objects.
std::optional<StatusReading> reading(QByteArrayView body, const QString &product);

} // namespace kelvo::GoogleIncidentFeed
