#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDateTime>
#include <QFileSystemWatcher>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace kelvo {

/// A connection to a message bus. When the connection is lost, it is made again as soon as the bus is back. While there
/// is no bus, the process wakes up only when the directory of the bus's socket changes.
class BusConnection : public QObject
{
    Q_OBJECT

public:
    /// Connects immediately if the bus is running. With an empty address the object never connects.
    explicit BusConnection(const QString &address, QObject *parent = nullptr);
    ~BusConnection() override;

    /// The connections that the process shares. They are closed when the last user releases them.
    static std::shared_ptr<BusConnection> session();
    static std::shared_ptr<BusConnection> system();

    bool isConnected() const { return isConnected_; }
    /// The current connection. It is a different one after each `connected`. An object that is registered on it must be
    /// unregistered before the end of this object and in `disconnected`: Qt closes a connection in a thread of its own and
    /// uses each object there that the connection still knows, even while this object is being destroyed.
    const QDBusConnection &connection() const { return connection_; }

    /// Calls `slot` of `receiver` for each matching signal, whoever sends it, on this connection and on each later one, until
    /// `unsubscribe` or the end of `receiver`. If `firstArgument` is not empty, the signal's first argument must be this
    /// text. `slot` is a string made by SLOT(); if it takes a QDBusMessage, it can check the sender. (For a sender that Qt
    /// is told, it blocks until the bus has answered who that is. If the connection is lost meanwhile, it aborts the
    /// process: seen with Qt 6.4.)
    void subscribe(const QString &path, const QString &interface, const QString &member, QObject *receiver,
                   const char *slot, const QString &firstArgument = {});
    /// Takes the same arguments as `subscribe`.
    void unsubscribe(const QString &path, const QString &interface, const QString &member, QObject *receiver,
                     const char *slot, const QString &firstArgument = {});

    /// The time that D-Bus gives a peer to answer when the caller sets no limit.
    static constexpr std::chrono::milliseconds defaultTimeout{-1};
    /// Sends a method call. Passes the reply or the error to `answered`, unless `context` is destroyed before. A peer that
    /// has not answered after `timeout` gives an error.
    void call(const QDBusMessage &message, QObject *context, std::function<void(const QDBusMessage &)> answered,
              std::chrono::milliseconds timeout = defaultTimeout) const;

Q_SIGNALS:
    /// The subscriptions are in force.
    void connected();
    /// `connection` is still the one that was lost.
    void disconnected();

private Q_SLOTS:
    void onDisconnected();

private:
    struct Subscription
    {
        QString path;
        QString interface;
        QString member;
        QPointer<QObject> receiver;
        QByteArray slot;
        QString firstArgument;

        /// What the arguments of a signal must begin with.
        QStringList arguments() const { return firstArgument.isEmpty() ? QStringList() : QStringList(firstArgument); }
        bool operator==(const Subscription &) const = default;
    };

    bool open();
    void close();
    void connectSlot(const Subscription &subscription);
    void disconnectSlot(const Subscription &subscription);
    void seek();
    void watchForSocket();
    void watchDirectory(const QString &path);
    void onDirectoryChanged();

    QString address_;
    QString socketPath_;
    QDBusConnection connection_;
    bool isConnected_ = false;
    std::vector<Subscription> subscriptions_;
    QFileSystemWatcher directory_;
    QDateTime socketChanged_;
    QTimer retry_;
    int attempts_ = 0;
};

} // namespace kelvo
