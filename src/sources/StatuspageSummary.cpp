#include "sources/StatuspageSummary.h"

#include "sources/JsonDocument.h"

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

using Component = StatuspageSummary::Component;

std::optional<StatuspageSummary::Status> decodeStatus(simdjson::dom::element element)
{
    simdjson::dom::object object;
    if (element.get(object) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    auto indicator = textAt(object, "indicator");
    auto description = textAt(object, "description");
    if (!indicator || !description) {
        return std::nullopt;
    }
    return StatuspageSummary::Status{*std::move(indicator), *std::move(description)};
}

std::optional<Component> decodeComponent(simdjson::dom::element element)
{
    simdjson::dom::object object;
    if (element.get(object) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    auto name = textAt(object, "name");
    auto status = textAt(object, "status");
    if (!name || !status) {
        return std::nullopt;
    }
    return Component{*std::move(name), *std::move(status)};
}

std::optional<std::vector<Component>> decodeComponents(simdjson::dom::element element)
{
    std::vector<Component> components;
    if (element.is_null()) {
        return components;
    }
    simdjson::dom::array array;
    if (element.get(array) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    for (const auto item : array) {
        auto component = decodeComponent(item);
        if (!component) {
            return std::nullopt;
        }
        components.push_back(*std::move(component));
    }
    return components;
}

template<typename Matches>
std::vector<Component> take(const std::vector<Component> &components, const QStringList &names, Matches matches)
{
    std::vector<Component> taken;
    std::copy_if(components.begin(), components.end(), std::back_inserter(taken), [&](const Component &component) {
        return std::any_of(names.begin(), names.end(),
                           [&](const QString &name) { return matches(component.name, name); });
    });
    return taken;
}

/// Returns the components whose names equal one of `names`, ignoring case. If there are none, returns the components
/// whose names contain one of `names`.
std::vector<Component> select(const std::vector<Component> &components, const QStringList &names, const QLocale &locale)
{
    auto taken = take(components, names, [](const QString &component, const QString &name) {
        return component.compare(name, Qt::CaseInsensitive) == 0;
    });
    if (taken.empty()) {
        taken = take(components, names, [&locale](const QString &component, const QString &name) {
            return locale.toLower(component).contains(locale.toLower(name));
        });
    }
    return taken;
}

struct IndicatorVerdict
{
    QLatin1StringView indicator;
    ServiceHealth health;
    QLatin1StringView label;
};

constexpr IndicatorVerdict indicatorVerdicts[] = {
    {"none"_L1, ServiceHealth::operational, "Operational"_L1},
    {"minor"_L1, ServiceHealth::degraded, "Partial outage"_L1},
    {"major"_L1, ServiceHealth::outage, "Major outage"_L1},
    {"critical"_L1, ServiceHealth::outage, "Major outage"_L1},
};

StatusReading judgePage(const StatuspageSummary::Status &status)
{
    for (const auto &verdict : indicatorVerdicts) {
        if (status.indicator == verdict.indicator) {
            return {verdict.health, verdict.label};
        }
    }
    return {ServiceHealth::unknown, status.description};
}

/// When the status of a component replaces the verdict of the components before it.
enum class Precedence {
    final,            ///< always; later components are ignored
    unlessOutage,     ///< unless the verdict is an outage
    whileOperational, ///< only if the verdict is operational
};

struct ComponentVerdict
{
    QLatin1StringView status;
    Precedence precedence;
    ServiceHealth health;
    QLatin1StringView label;
};

// Any other status does not change the verdict.
constexpr ComponentVerdict componentVerdicts[] = {
    {"major_outage"_L1, Precedence::final, ServiceHealth::outage, "Major outage"_L1},
    {"partial_outage"_L1, Precedence::unlessOutage, ServiceHealth::degraded, "Partial outage"_L1},
    {"degraded_performance"_L1, Precedence::whileOperational, ServiceHealth::degraded, "Degraded"_L1},
    {"under_maintenance"_L1, Precedence::whileOperational, ServiceHealth::degraded, "Maintenance"_L1},
};

const ComponentVerdict *verdictOn(const Component &component)
{
    const auto found = std::find_if(std::begin(componentVerdicts), std::end(componentVerdicts),
                                    [&](const auto &verdict) { return component.status == verdict.status; });
    return found == std::end(componentVerdicts) ? nullptr : found;
}

bool overrides(Precedence precedence, ServiceHealth running)
{
    switch (precedence) {
    case Precedence::final: return true;
    case Precedence::unlessOutage: return running != ServiceHealth::outage;
    case Precedence::whileOperational: return running == ServiceHealth::operational;
    }
    Q_UNREACHABLE();
}

/// Combines the verdicts of the components in page order.
StatusReading judgeComponents(const std::vector<Component> &components)
{
    StatusReading running{ServiceHealth::operational, u"Operational"_s};
    for (const auto &component : components) {
        const auto *verdict = verdictOn(component);
        if (!verdict || !overrides(verdict->precedence, running.health)) {
            continue;
        }
        running = {verdict->health, verdict->label};
        if (verdict->precedence == Precedence::final) {
            break;
        }
    }
    return running;
}

} // namespace

std::optional<StatuspageSummary> StatuspageSummary::decode(const QByteArray &body)
{
    const auto document = JsonDocument::parse(body);
    simdjson::dom::object root;
    simdjson::dom::element status;
    if (!document || document->root().get(root) != simdjson::SUCCESS
        || root.at_key("status").get(status) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    StatuspageSummary summary;
    if (auto decoded = decodeStatus(status)) {
        summary.status = *std::move(decoded);
    } else {
        return std::nullopt;
    }
    simdjson::dom::element components;
    if (root.at_key("components").get(components) == simdjson::SUCCESS) {
        auto decoded = decodeComponents(components);
        if (!decoded) {
            return std::nullopt;
        }
        summary.components = *std::move(decoded);
    }
    return summary;
}

StatusReading StatuspageSummary::reading(const QStringList &componentNames, const QLocale &locale) const
{
    const auto taken = select(components, componentNames, locale);
    return taken.empty() ? judgePage(status) : judgeComponents(taken);
}

} // namespace kelvo
