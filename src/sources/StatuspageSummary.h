#pragma once

#include "model/StatusReading.h"

#include <QByteArrayView>
#include <QLocale>
#include <QStringList>

#include <optional>
#include <vector>

namespace kelvo {

/// The part that is read of a Statuspage summary document (the API's /api/v2/summary.json).
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
    std::vector<Component> components; ///< in the page's order; empty where the page gives none

    bool operator==(const StatuspageSummary &) const = default;

    /// Nothing when `body` is no JSON, lacks a required key, or has a value of the wrong type anywhere in this part.
    static std::optional<StatuspageSummary> decode(QByteArrayView body);

    /// The reading for the service that `componentNames` stand for: the worst of the components of those names; where
    /// the page has none of them, the page's own indicator. `locale` rules the search for names within longer names.
    StatusReading reading(const QStringList &componentNames, const QLocale &locale = QLocale()) const;
};

} // namespace kelvo
