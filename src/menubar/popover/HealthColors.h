#pragma once

#include "model/ServiceHealth.h"
#include "style/Tokens.h"

#include <QColor>
#include <QObject>
#include <QQmlEngine>

namespace kelvo {

/// Registers ServiceHealth as a QML value type.
struct ServiceHealthValue
{
    Q_GADGET
    QML_FOREIGN(kelvo::ServiceHealth)
    QML_VALUE_TYPE(serviceHealth)
};

/// The colours of a health, in the light or dark appearance of the desktop.
class HealthColors : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kelvo::ServiceHealth health READ health WRITE setHealth NOTIFY healthChanged FINAL)
    Q_PROPERTY(QColor dot READ dot NOTIFY changed FINAL)
    Q_PROPERTY(QColor text READ text NOTIFY changed FINAL)

public:
    explicit HealthColors(QObject *parent = nullptr);

    ServiceHealth health() const { return health_; }
    QColor dot() const;
    QColor text() const;

    void setHealth(ServiceHealth health);

Q_SIGNALS:
    void healthChanged();
    /// The colours may have changed.
    void changed();

private:
    Tokens tokens_;
    ServiceHealth health_ = ServiceHealth::unknown;
};

} // namespace kelvo
