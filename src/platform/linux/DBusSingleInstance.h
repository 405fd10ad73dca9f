#pragma once

#include "platform/SingleInstance.h"
#include "platform/linux/BusConnection.h"

#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace kelvo {

/// One instance on the session bus: whoever owns the application's name there. It answers as a desktop expects of an
/// application that is started over the bus.
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
