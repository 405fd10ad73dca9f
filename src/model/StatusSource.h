#pragma once

#include <QHashFunctions>
#include <QString>
#include <QStringList>

#include <variant>

namespace kelvo {

/// A status page that publishes a Statuspage summary document.
struct StatuspageSource
{
    QString base;           ///< the page's origin: scheme and host, no trailing slash
    QStringList components; ///< names of the page's components that make up the service

    bool operator==(const StatuspageSource &) const = default;
};

/// Google's incident dashboard.
struct GoogleDashboardSource
{
    QString product; ///< the product's title in the incidents

    bool operator==(const GoogleDashboardSource &) const = default;
};

/// Where the public status of a service is published.
using StatusSource = std::variant<StatuspageSource, GoogleDashboardSource>;

inline size_t qHash(const StatuspageSource &source, size_t seed = 0)
{
    return qHashMulti(seed, source.base, source.components);
}

inline size_t qHash(const GoogleDashboardSource &source, size_t seed = 0)
{
    return qHashMulti(seed, source.product);
}

inline size_t qHash(const StatusSource &source, size_t seed = 0)
{
    return qHashMulti(seed, source.index(), std::visit([](const auto &payload) { return qHash(payload); }, source));
}

} // namespace kelvo
