#include "sources/GoogleIncidentFeed.h"

#include "sources/JsonDocument.h"

#include <algorithm>

namespace kelvo::GoogleIncidentFeed {

using namespace Qt::StringLiterals;

namespace {

bool isArrayOfObjects(simdjson::dom::element element)
{
    simdjson::dom::array array;
    return element.get(array) == simdjson::SUCCESS
        && std::all_of(array.begin(), array.end(), [](simdjson::dom::element item) { return item.is_object(); });
}

/// Whether the key is there, whatever its value: an "end" of null ends an incident too.
bool has(simdjson::dom::object object, std::string_view key)
{
    return object.at_key(key).error() == simdjson::SUCCESS;
}

bool affects(simdjson::dom::object incident, const QString &product)
{
    simdjson::dom::element products;
    if (incident.at_key("affected_products").get(products) != simdjson::SUCCESS || !isArrayOfObjects(products)) {
        return false;
    }
    const auto list = products.get_array().value_unsafe();
    return std::any_of(list.begin(), list.end(), [&](simdjson::dom::element item) {
        return textAt(item.get_object().value_unsafe(), "title") == product;
    });
}

StatusReading judge(simdjson::dom::object incident)
{
    if (has(incident, "currently_affected_locations") || textAt(incident, "severity") == u"high"_s) {
        return {ServiceHealth::outage, u"Service outage"_s};
    }
    return {ServiceHealth::degraded, u"Service disruption"_s};
}

} // namespace

std::optional<StatusReading> reading(QByteArrayView body, const QString &product)
{
    const auto document = JsonDocument::parse(body);
    if (!document || !isArrayOfObjects(document->root())) {
        return std::nullopt;
    }
    for (const auto item : document->root().get_array().value_unsafe()) {
        const auto incident = item.get_object().value_unsafe();
        if (!has(incident, "end") && affects(incident, product)) {
            return judge(incident);
        }
    }
    return StatusReading{ServiceHealth::operational, u"Operational"_s};
}

} // namespace kelvo::GoogleIncidentFeed
