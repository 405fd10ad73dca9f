#pragma once

#include "support/PrivateBus.h"

#include <QDBusContext>
#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QVariantMap>

namespace kelvo {

using PortalSettings = QMap<QString, QVariantMap>;

/// A fake of the settings portal on a private bus.
class FakePortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    FakePortal(const PrivateBus &bus, const PortalSettings &settings);

    /// Changes a setting and emits SettingChanged.
    void set(const QString &group, const QString &name, const QVariant &value);
    /// The number of settings that were read.
    int reads() const { return reads_; }

public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant Read(const QString &group, const QString &name);

private:
    PortalSettings settings_;
    int reads_ = 0;
    BusService service_;
};

} // namespace kelvo
