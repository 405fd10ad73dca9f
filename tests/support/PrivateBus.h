#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace kelvo {

/// A message bus for one test. Its address stays the same when it is stopped and started again. It can start only the
/// services that are added to it.
class PrivateBus
{
public:
    /// Does not start the bus. The directory of its socket is made by the first `start`.
    PrivateBus();
    ~PrivateBus();

    /// Makes the bus refuse `name` to every client. Takes effect at the next start.
    void refuse(const QString &name);

    void start();
    /// Kills the bus, as in a crash: its socket file is not removed.
    void kill();

    QString address() const;
    /// Returns a new connection to the running bus.
    QDBusConnection connect() const;
    /// Makes the running bus start `command` when a client calls `name`.
    void addActivatable(const QString &name, const QString &command);

private:
    void configure(const QString &policy);
    QString socketPath() const;

    QTemporaryDir directory_;
    QProcess daemon_;
};

/// Registers an object on a bus under a well-known name, on a connection of its own.
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
