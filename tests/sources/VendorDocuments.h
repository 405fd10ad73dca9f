#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>

namespace kelvo {

/// A component of a status page.
struct PageComponent
{
    QString name;
    QString status = QStringLiteral("operational");
};

/// A complete summary document as most pages publish it: components with all fields, a group, incidents, maintenances.
QJsonObject longSummary(const QString &indicator, const QString &description, const QList<PageComponent> &components);
/// A complete summary document as OpenAI's page publishes it: few fields per component, and no keys for empty lists.
QJsonObject shortSummary(const QString &indicator, const QString &description, const QList<PageComponent> &components);

/// The components that the vendors' pages list, all operational.
QList<PageComponent> claudeComponents();
QList<PageComponent> openaiComponents();
QList<PageComponent> cursorComponents();
QList<PageComponent> githubComponents();
/// Returns `components` with the status of every component named `name` set to `status`.
QList<PageComponent> with(QList<PageComponent> components, const QString &name, const QString &status);

/// A complete current incident of Google's feed with the severity "medium".
QJsonObject currentIncident(const QString &productTitle);
/// The same incident with an end time.
QJsonObject endedIncident(const QString &productTitle);

/// Serialises the document to compact JSON.
QByteArray json(const QJsonValue &value);

} // namespace kelvo
