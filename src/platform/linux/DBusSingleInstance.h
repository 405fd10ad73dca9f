#pragma once

#include "platform/SingleInstance.h"
#include "platform/linux/BusConnection.h"

#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <chrono>

namespace kelvo {

/// The process that owns the application's name on the session bus is the instance. It implements
/// org.freedesktop.Application, through which a desktop starts D-Bus activatable applications.
class DBusSingleInstance : public SingleInstance
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// How long a start waits for the running instance.
    static constexpr std::chrono::milliseconds answerTimeout{5000};

    explicit DBusSingleInstance(std::shared_ptr<BusConnection> sessionBus,
                                std::chrono::milliseconds timeout = DBusSingleInstance::answerTimeout);
    ~DBusSingleInstance() override;

    /// Without a bus, or on a bus that refuses the name, as in some sandboxes, this process is the instance.
    Outcome acquire() override;

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(const QString &name, const QVariantList &parameter,
                                     const QVariantMap &platformData);

private:
    /// Asks the bus for the name. Returns false when another instance has it. A bus that refuses the name gives it to
    /// nobody.
    bool claim();
    void withdraw();
    bool handOver() const;
    void activate(const QVariantMap &platformData);

    std::shared_ptr<BusConnection> bus_;
    std::chrono::milliseconds timeout_;
};

} // namespace kelvo
