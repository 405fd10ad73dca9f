#pragma once

#include "support/PrivateBus.h"

#include <QDBusContext>
#include <QObject>
#include <QStringList>

namespace kelvo {

/// The bus's kind of tray on a bus of the test's: keeps who asked for a place.
class FakeStatusNotifierWatcher : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost SCRIPTABLE true)

public:
    enum class Host { none, registered };

    FakeStatusNotifierWatcher(const PrivateBus &bus, Host host);

    /// Tells that somebody shows the items from now on.
    void registerHost();
    /// The unique names of the items' owners, in the order of their coming.
    const QStringList &items() const { return items_; }
    /// How often somebody asked for a host.
    int questions() const { return questions_; }
    /// A connection to the bus to talk to the items with.
    QDBusConnection connection() { return service_.connection(); }

public Q_SLOTS:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString &service);

private:
    bool hasHost();

    bool hasHost_;
    int questions_ = 0;
    QStringList items_;
    BusService service_;
};

} // namespace kelvo
