#pragma once

#include "platform/linux/BusConnection.h"

#include <QDBusServiceWatcher>
#include <QList>

#include <memory>

namespace kelvo {

/// Follows who owns a well-known name, across restarts of the owner and of the bus.
class BusNameOwner : public QObject
{
    Q_OBJECT

public:
    enum class Start {
        byOthers, ///< wait for somebody to start the service
        onDemand, ///< have the bus start it, where the bus knows how
    };

    BusNameOwner(std::shared_ptr<BusConnection> bus, const QString &name, Start start = Start::byOthers);

    /// The unique name of the owner; empty while there is none or it is not known yet.
    const QString &owner() const { return owner_; }
    bool isOwned() const { return !owner_.isEmpty(); }

    /// Calls a string-based slot of `receiver`, which must outlive this, for each such signal of whoever owns the name.
    void listen(const QString &path, const QString &interface, const QString &member, QObject *receiver,
                const char *slot);

Q_SIGNALS:
    /// Another owner, or none any more. Never from inside the constructor.
    void changed();

private:
    struct Signal
    {
        QString path;
        QString interface;
        QString member;
        QObject *receiver;
        const char *slot;
    };

    void follow();
    void set(const QString &owner);

    std::shared_ptr<BusConnection> bus_;
    QString name_;
    Start start_;
    QString owner_;
    QList<Signal> signals_;
    std::unique_ptr<QDBusServiceWatcher> watcher_;
};

} // namespace kelvo
