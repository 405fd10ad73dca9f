#include "FuzzTargets.h"

#include "sources/StatuspageSummary.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

using Components = std::vector<StatuspageSummary::Component>;

QByteArray json(const StatuspageSummary &summary)
{
    QJsonArray components;
    for (const auto &component : summary.components) {
        components.append(QJsonObject{{u"name"_s, component.name}, {u"status"_s, component.status}});
    }
    const QJsonObject status{{u"indicator"_s, summary.status.indicator},
                             {u"description"_s, summary.status.description}};
    return QJsonDocument(QJsonObject{{u"status"_s, status}, {u"components"_s, components}}).toJson();
}

/// The health of a service that consists of all components of the page, whatever their order.
ServiceHealth healthOf(const Components &components)
{
    const auto anyIs = [&](const QStringList &statuses) {
        return std::any_of(components.begin(), components.end(),
                           [&](const auto &component) { return statuses.contains(component.status); });
    };
    if (anyIs({u"major_outage"_s})) {
        return ServiceHealth::outage;
    }
    const QStringList degraded{u"partial_outage"_s, u"degraded_performance"_s, u"under_maintenance"_s};
    return anyIs(degraded) ? ServiceHealth::degraded : ServiceHealth::operational;
}

ServiceHealth healthOf(const StatuspageSummary::Status &status)
{
    if (status.indicator == u"none") {
        return ServiceHealth::operational;
    }
    if (status.indicator == u"minor") {
        return ServiceHealth::degraded;
    }
    return status.indicator == u"major" || status.indicator == u"critical" ? ServiceHealth::outage
                                                                           : ServiceHealth::unknown;
}

} // namespace

void fuzzStatuspageSummary(QByteArrayView document)
{
    const QByteArray bytes = document.toByteArray();
    const auto summary = StatuspageSummary::decode(bytes);
    require(StatuspageSummary::decode(bytes + " \r\n\t") == summary, "blanks after the document change nothing");
    if (!summary) {
        return;
    }
    require(document.contains('{') && document.contains('}'), "a document contains an object");
    require(StatuspageSummary::decode(json(*summary)) == summary, "a summary survives being written and decoded");

    QStringList names;
    for (const auto &component : summary->components) {
        names.append(component.name);
    }
    const auto whole = summary->reading(names);
    require(whole.health == (names.isEmpty() ? healthOf(summary->status) : healthOf(summary->components)),
            "the worst component decides, or else the page");
    const auto none = summary->reading({});
    require(none.health == healthOf(summary->status), "without a component, the page decides");

    // Readings for real names, which may be equal, contained or missing.
    for (const auto &name : {u"claude.ai"_s, u"Claude API"_s, u"Copilot"_s}) {
        const auto health = summary->reading({name}).health;
        require(health != ServiceHealth::outage || whole.health == ServiceHealth::outage
                    || none.health == ServiceHealth::outage,
                "an outage is on the page");
    }
}

} // namespace kelvo
