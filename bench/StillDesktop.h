#pragma once

#include <QDBusVariant>
#include <QObject>

namespace kelvo {

/// Plays the settings portal of the session bus, whose user asked for reduced motion, while it exists.
class StillDesktop : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    StillDesktop();
    ~StillDesktop() override;

public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant Read(const QString &group, const QString &name) const;
};

} // namespace kelvo
