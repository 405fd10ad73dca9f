#include "sources/GoogleIncidentFeed.h"

#include "sources/JsonDocument.h"

#include <algorithm>
#include <vector>

namespace kelvo::GoogleIncidentFeed {

using namespace Qt::StringLiterals;

namespace {

using Objects = std::vector<simdjson::dom::object>;

/// Returns nullopt when `element` is not an array or when one of its items is not an object.
std::optional<Objects> arrayOfObjects(simdjson::dom::element element)
{
    simdjson::dom::array array;
    if (element.get(array) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    Objects objects;
    for (const auto item : array) {
        simdjson::dom::object object;
        if (item.get(object) != simdjson::SUCCESS) {
            return std::nullopt;
        }
        objects.push_back(object);
    }
    return objects;
}

/// Whether the object has the key, whatever its value: an incident whose "end" is null has ended too.
bool has(simdjson::dom::object object, std::string_view key)
{
    return object.at_key(key).error() == simdjson::SUCCESS;
}

bool affects(simdjson::dom::object incident, const QString &product)
{
    simdjson::dom::element element;
    if (incident.at_key("affected_products").get(element) != simdjson::SUCCESS) {
        return false;
    }
    const auto products = arrayOfObjects(element).value_or(Objects{});
    return std::any_of(products.begin(), products.end(),
                       [&](simdjson::dom::object item) { return textAt(item, "title") == product; });
}

StatusReading judge(simdjson::dom::object incident)
{
    if (has(incident, "currently_affected_locations") || textAt(incident, "severity") == u"high"_s) {
        return {ServiceHealth::outage, u"Service outage"_s};
    }
    return {ServiceHealth::degraded, u"Service disruption"_s};
}

} // namespace

std::optional<StatusReading> reading(const QByteArray &body, const QString &product)
{
    const auto document = JsonDocument::parse(body);
    const auto incidents = document ? arrayOfObjects(document->root()) : std::nullopt;
    if (!incidents) {
        return std::nullopt;
    }
    for (const auto &incident : *incidents) {
        if (!has(incident, "end") && affects(incident, product)) {
            return judge(incident);
        }
    }
    return StatusReading{ServiceHealth::operational, u"Operational"_s};
}

} // namespace kelvo::GoogleIncidentFeed
