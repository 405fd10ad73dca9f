#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace kelvo {

/// A status page's summary document, in one of the two shapes that are published.
class StatusPageDocument
{
public:
    enum class Shape {
        Long,  ///< all that a hosted status page tells, groups included
        Short, ///< few fields per component, and no list of incidents while there are none
    };

    struct Component
    {
        QString name;
        QString status = QStringLiteral("operational");
        bool isGroup = false;
        QString group; ///< the name of the group it belongs to, if any
    };

    static StatusPageDocument claude();
    static StatusPageDocument openAI();
    static StatusPageDocument cursor();
    static StatusPageDocument gitHub();

    /// Sets every component of that name, compared exactly; adds one when there is none.
    void setComponent(const QString &name, const QString &status);
    /// An empty description takes the vendors' usual one.
    void setIndicator(const QString &indicator, const QString &description = {});
    void setAllOperational();

    const QList<Component> &components() const { return components_; }
    QByteArray toJson() const;

private:
    StatusPageDocument(Shape shape, QString pageName, QString url, QList<Component> components);

    Shape shape_;
    QString pageName_;
    QString url_;
    QString indicator_;
    QString description_;
    QList<Component> components_;
};

} // namespace kelvo
