#pragma once

#include "platform/SingleInstance.h"
#include "platform/linux/BusConnection.h"

#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace kelvo {

/// The process that owns the application's name on the session bus is the instance. It implements
/// org.freedesktop.Application, through which a desktop starts D-Bus activatable applications.
class DBusSingleInstance : public SingleInstance
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit DBusSingleInstance(std::shared_ptr<BusConnection> sessionBus);
    ~DBusSingleInstance() override;

    bool acquire() override;

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(const QString &name, const QVariantList &parameter,
                                     const QVariantMap &platformData);

private:
    bool claim();
    bool handOver() const;

    std::shared_ptr<BusConnection> bus_;
};

} // namespace kelvo
