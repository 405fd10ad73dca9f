#pragma once

#include "support/PrivateBus.h"

#include <QDBusContext>
#include <QDBusVariant>
#include <QMap>
#include <QObject>

#include <utility>

namespace kelvo {

/// The configuration service of Xfce on a bus of the test's.
class FakeXfconf : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.xfce.Xfconf")

public:
    explicit FakeXfconf(const PrivateBus &bus);

    /// Changes a property and tells so.
    void set(const QString &channel, const QString &property, const QVariant &value);
    /// Removes a property and tells so.
    void remove(const QString &channel, const QString &property);
    /// How many properties somebody asked for.
    int reads() const { return reads_; }

public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant GetProperty(const QString &channel, const QString &property);

private:
    QMap<std::pair<QString, QString>, QVariant> properties_;
    int reads_ = 0;
    BusService service_;
};

} // namespace kelvo
