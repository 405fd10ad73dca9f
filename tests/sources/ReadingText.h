#pragma once

#include "model/StatusReading.h"

#include <QJsonDocument>

#include <optional>

namespace kelvo {

/// For Qt Test's messages.
inline char *toString(const std::optional<StatusReading> &reading)
{
    return qstrdup(reading ? qPrintable(rawValue(reading->health) + QStringLiteral(", ") + reading->label)
                           : "(undecodable)");
}

inline char *toString(const StatusReading &reading)
{
    return toString(std::optional(reading));
}

/// Whether some object of the text may have a key twice. Readers differ in which of the two counts.
inline bool mayRepeatAKey(const QByteArray &text)
{
    // Written out again a text has lost its repeated keys, and so some colons.
    const auto colons = [](const QByteArray &bytes) { return bytes.count("\":"); };
    return colons(QJsonDocument::fromJson(text).toJson(QJsonDocument::Compact)) != colons(text);
}

} // namespace kelvo
