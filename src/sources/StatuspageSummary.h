#pragma once

#include "model/StatusReading.h"

#include <QByteArray>
#include <QLocale>
#include <QStringList>

#include <optional>
#include <vector>

namespace kelvo {

/// The part of a Statuspage summary document (/api/v2/summary.json) that this program reads.
struct StatuspageSummary
{
    struct Status
    {
        QString indicator;
        QString description;

        bool operator==(const Status &) const = default;
    };
    struct Component
    {
        QString name;
        QString status;

        bool operator==(const Component &) const = default;
    };

    Status status;
    std::vector<Component> components; ///< in page order; empty when the key is missing or null

    bool operator==(const StatuspageSummary &) const = default;

    /// Returns nullopt when `body` is not JSON, lacks a required key, or has a value of the wrong type in this part.
    static std::optional<StatuspageSummary> decode(const QByteArray &body);

    /// Returns the reading for the service that consists of the components with these names: the worst status among
    /// them, or the indicator of the whole page when the page has none of them. Names are compared ignoring case; if no
    /// name is equal, a component also matches when its name contains one of `componentNames`. `locale` lower-cases
    /// both for that second comparison.
    StatusReading reading(const QStringList &componentNames, const QLocale &locale = QLocale()) const;
};

} // namespace kelvo
