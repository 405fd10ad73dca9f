#include "FuzzTargets.h"

#include "sources/GoogleIncidentFeed.h"

#include <QString>

namespace kelvo {

using namespace Qt::StringLiterals;

void fuzzGoogleIncidentFeed(QByteArrayView document)
{
    const QByteArray bytes = document.toByteArray();
    const auto gemini = GoogleIncidentFeed::reading(bytes, u"Gemini"_s);
    require(GoogleIncidentFeed::reading(bytes + " \r\n\t", u"Gemini"_s) == gemini,
            "blanks after the document change nothing");
    const auto unheardOf = GoogleIncidentFeed::reading(bytes, u"\x1bunheard of"_s);
    require(unheardOf.has_value() == gemini.has_value(), "whether the feed is readable does not depend on the product");
    if (!gemini) {
        return;
    }
    require(bytes.contains('[') && bytes.contains(']'), "a feed contains a list");
    const auto &[health, label] = *gemini;
    require((health == ServiceHealth::operational && label == u"Operational")
                || (health == ServiceHealth::degraded && label == u"Service disruption")
                || (health == ServiceHealth::outage && label == u"Service outage"),
            "health and label fit together");

    // An escape can spell any name; without one, what the feed does not name cannot count.
    if (bytes.contains('\\')) {
        return;
    }
    require(unheardOf->health == ServiceHealth::operational, "a product that no incident names is operational");
    require(health == ServiceHealth::operational
                || (bytes.contains("\"affected_products\"") && bytes.contains("\"Gemini\"")),
            "an affected product is named");
    require(health != ServiceHealth::outage || bytes.contains("\"high\"")
                || bytes.contains("\"currently_affected_locations\""),
            "an outage is named");
}

} // namespace kelvo
