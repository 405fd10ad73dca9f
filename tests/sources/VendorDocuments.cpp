#include "VendorDocuments.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

const QString created = u"2023-07-11T17:32:21.021Z"_s;
const QString updated = u"2026-01-05T08:59:02.407Z"_s;

QJsonObject status(const QString &indicator, const QString &description)
{
    return {{u"indicator"_s, indicator}, {u"description"_s, description}};
}

QJsonObject update(const QString &text)
{
    return {{u"created"_s, updated},
            {u"modified"_s, updated},
            {u"when"_s, updated},
            {u"text"_s, text},
            {u"status"_s, u"SERVICE_DISRUPTION"_s},
            {u"affected_locations"_s, QJsonArray{}}};
}

} // namespace

QJsonObject longSummary(const QString &indicator, const QString &description, const QList<PageComponent> &components)
{
    QJsonArray list{QJsonObject{{u"id"_s, u"g1"_s},
                                {u"name"_s, u"All products"_s},
                                {u"status"_s, u"operational"_s},
                                {u"created_at"_s, created},
                                {u"updated_at"_s, updated},
                                {u"position"_s, 1},
                                {u"description"_s, QJsonValue::Null},
                                {u"showcase"_s, false},
                                {u"start_date"_s, QJsonValue::Null},
                                {u"group_id"_s, QJsonValue::Null},
                                {u"page_id"_s, u"p1"_s},
                                {u"group"_s, true},
                                {u"only_show_if_degraded"_s, false},
                                {u"components"_s, QJsonArray{u"c0"_s, u"c1"_s}}}};
    for (const auto &component : components) {
        list.append(QJsonObject{{u"id"_s, u"c%1"_s.arg(list.size())},
                                {u"name"_s, component.name},
                                {u"status"_s, component.status},
                                {u"created_at"_s, created},
                                {u"updated_at"_s, updated},
                                {u"position"_s, list.size()},
                                {u"description"_s, QJsonValue::Null},
                                {u"showcase"_s, true},
                                {u"start_date"_s, u"2023-07-11"_s},
                                {u"group_id"_s, u"g1"_s},
                                {u"page_id"_s, u"p1"_s},
                                {u"group"_s, false},
                                {u"only_show_if_degraded"_s, false}});
    }
    return {{u"page"_s,
             QJsonObject{{u"id"_s, u"p1"_s},
                         {u"name"_s, u"Vendor"_s},
                         {u"url"_s, u"https://status.example"_s},
                         {u"time_zone"_s, u"Etc/UTC"_s},
                         {u"updated_at"_s, updated}}},
            {u"status"_s, status(indicator, description)},
            {u"components"_s, list},
            {u"incidents"_s,
             QJsonArray{QJsonObject{{u"id"_s, u"i1"_s},
                                    {u"name"_s, u"Elevated errors – “investigating”"_s},
                                    {u"status"_s, u"investigating"_s},
                                    {u"impact"_s, u"minor"_s},
                                    {u"components"_s, QJsonArray{QJsonObject{{u"name"_s, u"without a status"_s}}}}}}},
            {u"scheduled_maintenances"_s, QJsonArray{}}};
}

QJsonObject shortSummary(const QString &indicator, const QString &description, const QList<PageComponent> &components)
{
    QJsonArray list;
    for (const auto &component : components) {
        list.append(QJsonObject{{u"id"_s, u"01JMXBRMFE6N2NNT7DG6X%1"_s.arg(list.size())},
                                {u"name"_s, component.name},
                                {u"status"_s, component.status},
                                {u"created_at"_s, created},
                                {u"updated_at"_s, updated},
                                {u"page_id"_s, u"p2"_s},
                                {u"position"_s, list.size() + 1}});
    }
    return {{u"page"_s,
             QJsonObject{{u"id"_s, u"p2"_s},
                         {u"name"_s, u"OpenAI"_s},
                         {u"url"_s, u"https://status.openai.com/"_s},
                         {u"updated_at"_s, updated}}},
            {u"status"_s, status(indicator, description)},
            {u"components"_s, list},
            {u"scheduled_maintenances"_s, QJsonArray{}}};
}

QList<PageComponent> claudeComponents()
{
    return {{u"claude.ai"_s},
            {u"Claude Console (platform.claude.com)"_s},
            {u"Claude API (api.anthropic.com)"_s},
            {u"Claude Code"_s},
            {u"Claude Cowork"_s},
            {u"Claude for Government"_s}};
}

QList<PageComponent> openaiComponents()
{
    return {{u"Conversations"_s}, {u"Login"_s}, {u"Responses"_s}, {u"Embeddings"_s}, {u"Login"_s}, {u"Sora"_s}};
}

QList<PageComponent> cursorComponents()
{
    return {{u"IDE"_s}, {u"cursor.com"_s}, {u"CLI"_s}, {u"Cloud Agents"_s}, {u"Bugbot"_s}};
}

QList<PageComponent> githubComponents()
{
    return {{u"Git Operations"_s}, {u"Actions"_s}, {u"Copilot"_s}, {u"Copilot AI Model Providers"_s}};
}

QList<PageComponent> with(QList<PageComponent> components, const QString &name, const QString &status)
{
    for (auto &component : components) {
        if (component.name == name) {
            component.status = status;
        }
    }
    return components;
}

QJsonObject currentIncident(const QString &productTitle)
{
    return {{u"id"_s, u"tJ5fCE8Tq3tGZ8JZ1Sx4"_s},
            {u"begin"_s, updated},
            {u"created"_s, updated},
            {u"modified"_s, updated},
            {u"external_desc"_s, u"**Summary**\nSome users may see errors"_s},
            {u"updates"_s, QJsonArray{update(u"later"_s), update(u"earlier"_s)}},
            {u"most_recent_update"_s, update(u"later"_s)},
            {u"status_impact"_s, u"SERVICE_DISRUPTION"_s},
            {u"severity"_s, u"medium"_s},
            {u"affected_products"_s,
             QJsonArray{QJsonObject{{u"title"_s, u"Gmail"_s}, {u"id"_s, u"prPt2LRcKkR1i4hdUPQz"_s}},
                        QJsonObject{{u"title"_s, productTitle}, {u"id"_s, u"npdyhgECDJ6tB66MxXyo"_s}}}},
            {u"uri"_s, u"incidents/tJ5fCE8Tq3tGZ8JZ1Sx4"_s}};
}

QJsonObject endedIncident(const QString &productTitle)
{
    auto incident = currentIncident(productTitle);
    incident.insert(u"end"_s, updated);
    incident.insert(u"severity"_s, u"high"_s);
    return incident;
}

QByteArray json(const QJsonValue &value)
{
    // Write the value within an array, because QJsonDocument does not write a bare string or number.
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return list.mid(1, list.size() - 2);
}

} // namespace kelvo
