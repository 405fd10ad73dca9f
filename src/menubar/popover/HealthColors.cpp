#include "menubar/popover/HealthColors.h"

namespace kelvo {

HealthColors::HealthColors(QObject *parent)
    : QObject(parent)
{
    connect(&tokens_, &Tokens::changed, this, &HealthColors::changed);
}

QColor HealthColors::dot() const
{
    switch (health_) {
    case ServiceHealth::operational: return tokens_.availableDot();
    case ServiceHealth::degraded: return tokens_.recoveringDot();
    case ServiceHealth::outage: return tokens_.outageDot();
    case ServiceHealth::unknown: return tokens_.inactiveDot();
    }
    Q_UNREACHABLE();
}

QColor HealthColors::text() const
{
    switch (health_) {
    case ServiceHealth::operational: return tokens_.availableText();
    case ServiceHealth::degraded: return tokens_.recoveringText();
    case ServiceHealth::outage: return tokens_.outageText();
    case ServiceHealth::unknown: return tokens_.labelTertiary();
    }
    Q_UNREACHABLE();
}

void HealthColors::setHealth(ServiceHealth health)
{
    if (health == health_) {
        return;
    }
    health_ = health;
    Q_EMIT healthChanged();
    Q_EMIT changed();
}

} // namespace kelvo
