#pragma once

#include "support/PrivateBus.h"

#include <QDBusContext>
#include <QDBusVariant>
#include <QMap>
#include <QObject>

#include <utility>

namespace kelvo {

/// A fake of Xfce's configuration service on a private bus.
class FakeXfconf : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.xfce.Xfconf")

public:
    explicit FakeXfconf(const PrivateBus &bus);

    /// Changes a property and emits PropertyChanged.
    void set(const QString &channel, const QString &property, const QVariant &value);
    /// Removes a property and emits PropertyRemoved.
    void remove(const QString &channel, const QString &property);
    /// The number of calls of GetProperty.
    int reads() const { return reads_; }

public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant GetProperty(const QString &channel, const QString &property);

private:
    QMap<std::pair<QString, QString>, QVariant> properties_;
    int reads_ = 0;
    BusService service_;
};

} // namespace kelvo
