#include "StillDesktop.h"

#include <QDBusConnection>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto service = u"org.freedesktop.portal.Desktop"_s;
const auto path = u"/org/freedesktop/portal/desktop"_s;

} // namespace

StillDesktop::StillDesktop()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(path, this, QDBusConnection::ExportScriptableSlots) || !bus.registerService(service)) {
        qFatal("The session has a settings portal already");
    }
}

StillDesktop::~StillDesktop()
{
    auto bus = QDBusConnection::sessionBus();
    bus.unregisterService(service);
    bus.unregisterObject(path);
}

QDBusVariant StillDesktop::Read(const QString &group, const QString &name) const
{
    const bool isMotion = group == "org.freedesktop.appearance"_L1 && name == "reduced-motion"_L1;
    return QDBusVariant(QVariant::fromValue(QDBusVariant(isMotion ? 1U : 0U)));
}

} // namespace kelvo
