#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDateTime>
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>

namespace kelvo {

/// A connection to one message bus that outlives the bus: lost, it is made again as soon as the bus is back. While
/// the bus is missing nothing wakes the process but a change in the directory of the bus's socket.
class BusConnection : public QObject
{
    Q_OBJECT

public:
    /// Connects at once where the bus answers. An empty address is a bus that never comes.
    explicit BusConnection(const QString &address, QObject *parent = nullptr);
    ~BusConnection() override;

    /// The connections that all services of this process share.
    static std::shared_ptr<BusConnection> session();
    static std::shared_ptr<BusConnection> system();

    bool isConnected() const { return isConnected_; }
    /// The connection as it stands. It is another one after each `connected`.
    const QDBusConnection &connection() const { return connection_; }

    /// Calls a string-based slot of `receiver` for each such signal of the peer with the unique name `sender`. The
    /// well-known name would do as well, but makes Qt wait for the bus to resolve it.
    void subscribe(const QString &sender, const QString &path, const QString &interface, const QString &member,
                   QObject *receiver, const char *slot);
    void unsubscribe(const QString &sender, const QString &path, const QString &interface, const QString &member,
                     QObject *receiver, const char *slot);

    /// Sends a method call and hands over its answer, a reply or an error, unless `context` is destroyed first.
    void call(const QDBusMessage &message, QObject *context, std::function<void(const QDBusMessage &)> answered) const;

Q_SIGNALS:
    void connected();
    void disconnected();

private Q_SLOTS:
    void onDisconnected();

private:
    bool open();
    void close();
    void seek();
    void watchForSocket();
    void watchDirectory(const QString &path);
    void onDirectoryChanged();

    QString address_;
    QString socketPath_;
    QDBusConnection connection_;
    bool isConnected_ = false;
    QFileSystemWatcher directory_;
    QDateTime socketChanged_;
    QTimer retry_;
    int attempts_ = 0;
};

} // namespace kelvo
