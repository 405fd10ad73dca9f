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

/// A whole summary document as most pages publish it: every component with all its fields, a group, incidents,
/// maintenances.
QJsonObject longSummary(const QString &indicator, const QString &description, const QList<PageComponent> &components);
/// A whole summary document as OpenAI's page publishes it: few fields, no key for what there is none of.
QJsonObject shortSummary(const QString &indicator, const QString &description, const QList<PageComponent> &components);

/// The components that the vendors' pages list, all operational.
QList<PageComponent> claudeComponents();
QList<PageComponent> openaiComponents();
QList<PageComponent> cursorComponents();
QList<PageComponent> githubComponents();
/// `components` with every one of that name set to `status`.
QList<PageComponent> with(QList<PageComponent> components, const QString &name, const QString &status);

/// A whole incident of Google's feed that goes on, of severity "medium".
QJsonObject currentIncident(const QString &productTitle);
/// The same after its end.
QJsonObject endedIncident(const QString &productTitle);

/// The document as bytes, compact.
QByteArray json(const QJsonValue &value);

} // namespace kelvo
