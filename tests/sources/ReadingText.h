#pragma once

#include "model/StatusReading.h"

#include <QJsonDocument>

#include <optional>

namespace kelvo {

/// Formats a reading for the messages of Qt Test.
inline char *toString(const std::optional<StatusReading> &reading)
{
    return qstrdup(reading ? qPrintable(rawValue(reading->health) + QStringLiteral(", ") + reading->label)
                           : "(undecodable)");
}

inline char *toString(const StatusReading &reading)
{
    return toString(std::optional(reading));
}

/// Whether an object in the text may have a key twice. Parsers differ in which of the two they use.
inline bool mayRepeatAKey(const QByteArray &text)
{
    // Parsing and writing the text again removes repeated keys, and with them some colons.
    const auto colons = [](const QByteArray &bytes) { return bytes.count("\":"); };
    return colons(QJsonDocument::fromJson(text).toJson(QJsonDocument::Compact)) != colons(text);
}

} // namespace kelvo
