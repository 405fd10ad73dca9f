#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace kelvo {

/// The summary document of a status page, in one of the two shapes that vendors publish.
class StatusPageDocument
{
public:
    enum class Shape {
        Long,  ///< all fields of a hosted status page, including groups
        Short, ///< few fields per component; no "incidents" key while there are none
    };

    struct Component
    {
        QString name;
        QString status = QStringLiteral("operational");
        bool isGroup = false;
        QString group; ///< the name of the group that the component belongs to; may be empty
    };

    static StatusPageDocument claude();
    static StatusPageDocument openAI();
    static StatusPageDocument cursor();
    static StatusPageDocument gitHub();

    /// Sets the status of every component with this exact name. Adds a component when there is none.
    void setComponent(const QString &name, const QString &status);
    /// Sets the indicator. An empty description means the usual one for the indicator.
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
