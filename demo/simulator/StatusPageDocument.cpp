#include "simulator/StatusPageDocument.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

const auto created = u"2025-03-04T09:12:47.318Z"_s;
const auto updated = u"2026-01-01T00:00:00.000Z"_s;
const auto operational = u"operational"_s;

QString idOf(const QString &page, const QString &name, qsizetype position)
{
    const QByteArray key = (page + u'/' + name + u'/' + QString::number(position)).toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex().first(12));
}

QString usualDescription(const QString &indicator)
{
    if (indicator == "none"_L1) {
        return u"All Systems Operational"_s;
    }
    if (indicator == "minor"_L1) {
        return u"Minor Service Outage"_s;
    }
    if (indicator == "major"_L1) {
        return u"Partial System Outage"_s;
    }
    if (indicator == "critical"_L1) {
        return u"Major Service Outage"_s;
    }
    return u"Service Under Maintenance"_s;
}

} // namespace

StatusPageDocument::StatusPageDocument(Shape shape, QString pageName, QString url, QList<Component> components)
    : shape_(shape)
    , pageName_(std::move(pageName))
    , url_(std::move(url))
    , components_(std::move(components))
{
    setIndicator(u"none"_s);
}

// clang-format off
StatusPageDocument StatusPageDocument::claude()
{
    return {Shape::Long, u"Claude"_s, u"https://status.claude.com"_s,
            {{.name = u"claude.ai"_s, .group = {}},
             {.name = u"Claude Console (platform.claude.com)"_s, .group = {}},
             {.name = u"Claude API (api.anthropic.com)"_s, .group = {}},
             {.name = u"Claude Code"_s, .group = {}},
             {.name = u"Claude Cowork"_s, .group = {}},
             {.name = u"Claude for Government"_s, .group = {}}}};
}

StatusPageDocument StatusPageDocument::openAI()
{
    return {Shape::Short, u"OpenAI"_s, u"https://status.openai.com"_s,
            {{.name = u"Conversations"_s, .group = {}},
             {.name = u"Login"_s, .group = {}},
             {.name = u"Responses"_s, .group = {}},
             {.name = u"Embeddings"_s, .group = {}},
             {.name = u"Images"_s, .group = {}},
             {.name = u"Fine-tuning"_s, .group = {}},
             {.name = u"Voice mode"_s, .group = {}},
             {.name = u"Codex"_s, .group = {}},
             {.name = u"Login"_s, .group = {}}}};
}

StatusPageDocument StatusPageDocument::cursor()
{
    const auto product = u"Cursor"_s;
    return {Shape::Long, u"Cursor"_s, u"https://status.cursor.com"_s,
            {{.name = product, .isGroup = true, .group = {}},
             {.name = u"IDE"_s, .group = product},
             {.name = u"CLI"_s, .group = product},
             {.name = u"Cloud Agents"_s, .group = product},
             {.name = u"Bugbot"_s, .group = product},
             {.name = u"cursor.com"_s, .group = {}},
             {.name = u"Marketplace"_s, .group = {}}}};
}

StatusPageDocument StatusPageDocument::gitHub()
{
    return {Shape::Long, u"GitHub"_s, u"https://www.githubstatus.com"_s,
            {{.name = u"Git Operations"_s, .group = {}},
             {.name = u"Webhooks"_s, .group = {}},
             {.name = u"API Requests"_s, .group = {}},
             {.name = u"Issues"_s, .group = {}},
             {.name = u"Pull Requests"_s, .group = {}},
             {.name = u"Actions"_s, .group = {}},
             {.name = u"Packages"_s, .group = {}},
             {.name = u"Pages"_s, .group = {}},
             {.name = u"Codespaces"_s, .group = {}},
             {.name = u"Copilot"_s, .group = {}},
             {.name = u"Copilot AI Model Providers"_s, .group = {}}}};
}
// clang-format on

void StatusPageDocument::setComponent(const QString &name, const QString &status)
{
    bool found = false;
    for (Component &component : components_) {
        if (component.name == name) {
            component.status = status;
            found = true;
        }
    }
    if (!found) {
        components_.append({.name = name, .status = status, .group = {}});
    }
}

void StatusPageDocument::setIndicator(const QString &indicator, const QString &description)
{
    indicator_ = indicator;
    description_ = description.isEmpty() ? usualDescription(indicator) : description;
}

void StatusPageDocument::setAllOperational()
{
    std::ranges::for_each(components_, [](Component &component) { component.status = operational; });
    setIndicator(u"none"_s);
}

QByteArray StatusPageDocument::toJson() const
{
    const QString pageId = idOf(pageName_, {}, 0);
    const auto idAt = [&](qsizetype position) { return idOf(pageName_, components_.at(position).name, position); };
    const auto idOfGroup = [&](const QString &group) -> QJsonValue {
        const auto found = std::ranges::find_if(
            components_, [&](const Component &component) { return component.isGroup && component.name == group; });
        return found == components_.end() ? QJsonValue() : QJsonValue(idAt(found - components_.begin()));
    };

    QJsonArray components;
    for (qsizetype position = 0; position < components_.size(); ++position) {
        const Component &component = components_.at(position);
        QJsonObject object{{u"id"_s, idAt(position)},    {u"name"_s, component.name}, {u"status"_s, component.status},
                           {u"created_at"_s, created},   {u"updated_at"_s, updated},  {u"page_id"_s, pageId},
                           {u"position"_s, position + 1}};
        if (shape_ == Shape::Long) {
            object[u"description"_s] = QJsonValue();
            object[u"showcase"_s] = !component.isGroup;
            object[u"start_date"_s] = u"2025-03-04"_s;
            object[u"group_id"_s] = idOfGroup(component.group);
            object[u"group"_s] = component.isGroup;
            object[u"only_show_if_degraded"_s] = false;
        }
        if (component.isGroup) {
            QJsonArray members;
            for (qsizetype member = 0; member < components_.size(); ++member) {
                if (components_.at(member).group == component.name) {
                    members.append(idAt(member));
                }
            }
            object[u"components"_s] = members;
        }
        components.append(object);
    }

    QJsonObject document{{u"page"_s,
                          QJsonObject{{u"id"_s, pageId},
                                      {u"name"_s, pageName_},
                                      {u"url"_s, url_},
                                      {u"time_zone"_s, u"Etc/UTC"_s},
                                      {u"updated_at"_s, updated}}},
                         {u"status"_s, QJsonObject{{u"indicator"_s, indicator_}, {u"description"_s, description_}}},
                         {u"components"_s, components}};
    if (shape_ == Shape::Long) {
        document[u"incidents"_s] = QJsonArray();
        document[u"scheduled_maintenances"_s] = QJsonArray();
    }
    return QJsonDocument(document).toJson(QJsonDocument::Compact);
}

} // namespace kelvo
