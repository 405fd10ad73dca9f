#include "simulator/IncidentFeedDocument.h"

#include "simulator/SimulatedInternet.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

const QStringList products{u"Gmail"_s,  u"Google Drive"_s,    u"Google Meet"_s,
                           u"Gemini"_s, u"Google Calendar"_s, u"NotebookLM"_s};

QString time(int daysAgo, int hour)
{
    const QDateTime newest(QDate(2026, 1, 1), QTime(hour, 30), QTimeZone::utc());
    return newest.addDays(-daysAgo).toString(Qt::ISODate).replace(u"Z"_s, u"+00:00"_s);
}

QJsonObject update(int daysAgo, int hour, const QString &status)
{
    const QString text =
        u"**Summary**\n\nOur engineers are looking into reports that some users may see errors or slow "
        "answers. We will provide more information as soon as we have it.\n\n**Workaround:** None at "
        "this time. **Affected:** a part of the users in several regions."_s;
    return {{u"created"_s, time(daysAgo, hour)},
            {u"modified"_s, time(daysAgo, hour)},
            {u"when"_s, time(daysAgo, hour)},
            {u"text"_s, text},
            {u"status"_s, status},
            {u"affected_locations"_s, QJsonArray()}};
}

QJsonObject incident(int daysAgo, const QString &product, const QString &severity)
{
    const QJsonObject latest = update(daysAgo, 11, u"SERVICE_DISRUPTION"_s);
    return {
        {u"id"_s, u"Sim%1"_s.arg(daysAgo, 8, 10, QChar(u'0'))},
        {u"number"_s, u"%1"_s.arg(1'000'000 + daysAgo)},
        {u"begin"_s, time(daysAgo, 8)},
        {u"created"_s, time(daysAgo, 9)},
        {u"modified"_s, time(daysAgo, 11)},
        {u"external_desc"_s, u"We are investigating an issue with %1."_s.arg(product)},
        {u"updates"_s,
         QJsonArray{latest, update(daysAgo, 10, u"SERVICE_DISRUPTION"_s), update(daysAgo, 9, u"SERVICE_DISRUPTION"_s)}},
        {u"most_recent_update"_s, latest},
        {u"status_impact"_s, u"SERVICE_DISRUPTION"_s},
        {u"severity"_s, severity},
        {u"service_key"_s, u"sim"_s},
        {u"affected_products"_s, QJsonArray{QJsonObject{{u"title"_s, product}, {u"id"_s, u"sim-%1"_s.arg(product)}}}},
        {u"uri"_s, u"incidents/Sim%1"_s.arg(daysAgo, 8, 10, QChar(u'0'))}};
}

} // namespace

QByteArray incidentFeed(const std::optional<SimulatedIncident> &current, int endedCount)
{
    QJsonArray feed;
    if (current) {
        QJsonObject open = incident(0, current->product, current->severity);
        if (current->hasAffectedLocations) {
            open[u"currently_affected_locations"_s] = QJsonArray{
                QJsonObject{{u"title"_s, u"Europe"_s}, {u"id"_s, u"europe"_s}}};
        }
        feed.append(open);
    }
    for (int daysAgo = 1; daysAgo <= endedCount; ++daysAgo) {
        QJsonObject ended = incident(daysAgo, products.at(daysAgo % products.size()), u"medium"_s);
        ended[u"end"_s] = time(daysAgo, 12);
        feed.append(ended);
    }
    return QJsonDocument(feed).toJson(QJsonDocument::Compact);
}

} // namespace kelvo
