#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace kelvo {

/// A message bus of a test's own at an address that does not change while it is stopped and started. Nothing but the
/// services named to it can be started by it.
class PrivateBus
{
public:
    /// The socket lies in a directory of its own that appears with the first `start`.
    PrivateBus();
    ~PrivateBus();

    void start();
    /// Ends the bus as a crash does: its socket stays behind.
    void kill();

    QString address() const;
    /// A further connection to the running bus.
    QDBusConnection connect() const;
    /// Lets the running bus start `command` when somebody calls `name`.
    void addActivatable(const QString &name, const QString &command);

private:
    QString socketPath() const;

    QTemporaryDir directory_;
    QProcess daemon_;
};

/// Lends a connection of its own to an object that stands on a bus under a well-known name.
class BusService
{
public:
    BusService(const PrivateBus &bus, const QString &name, const QString &path, QObject *object,
               QDBusConnection::RegisterOptions options);
    ~BusService();
    BusService(const BusService &) = delete;
    BusService &operator=(const BusService &) = delete;

    QDBusConnection &connection() { return connection_; }

private:
    QDBusConnection connection_;
};

} // namespace kelvo
