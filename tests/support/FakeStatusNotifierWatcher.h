#pragma once

#include "support/PrivateBus.h"

#include <QDBusContext>
#include <QObject>
#include <QStringList>

namespace kelvo {

/// A fake StatusNotifierItem tray on a private bus. It records the items that register.
class FakeStatusNotifierWatcher : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ readHost SCRIPTABLE true)

public:
    enum class Host { none, registered };

    FakeStatusNotifierWatcher(const PrivateBus &bus, Host host);

    /// Announces that a host shows the items from now on.
    void registerHost();
    /// Announces that no host shows the items any more.
    void unregisterHost();
    bool hasHost() const { return hasHost_; }
    /// The unique bus names of the registered items, in order.
    const QStringList &items() const { return items_; }
    /// The number of times that the host property was read.
    int questions() const { return questions_; }
    /// The connection of the tray, for calls to the items.
    QDBusConnection connection() { return service_.connection(); }

public Q_SLOTS:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString &service);

private:
    bool readHost();

    bool hasHost_;
    int questions_ = 0;
    QStringList items_;
    BusService service_;
};

} // namespace kelvo
