#pragma once

#include "platform/linux/BusConnection.h"

#include <QList>

#include <memory>

namespace kelvo {

/// Returns the call that asks the bus for the owner of a name.
QDBusMessage ownerQuestion(const QString &name);

/// Tracks the owner of a well-known bus name, across restarts of the owner and of the bus.
class BusNameOwner : public QObject
{
    Q_OBJECT

public:
    enum class Start {
        byOthers, ///< wait until another process starts the service
        onDemand, ///< ask the bus to start the service, if it is activatable
    };

    BusNameOwner(std::shared_ptr<BusConnection> bus, const QString &name, Start start = Start::byOthers);

    /// The unique name of the owner; empty while there is no owner or the bus has not answered yet.
    const QString &owner() const { return owner_; }
    bool isOwned() const { return !owner_.isEmpty(); }

    /// Calls `slot` of `receiver` for each matching signal of the current owner. `slot` is a string made by SLOT().
    /// `receiver` must outlive this object.
    void listen(const QString &path, const QString &interface, const QString &member, QObject *receiver,
                const char *slot);

Q_SIGNALS:
    /// The owner changed or is gone. Never emitted from inside the constructor.
    void changed();

private Q_SLOTS:
    void onOwnerChanged(const QDBusMessage &signal);
    void onSignal(const QDBusMessage &signal);

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
    std::unique_ptr<QObject> question_;
};

} // namespace kelvo
