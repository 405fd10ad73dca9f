#include "support/FakePortal.h"

#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto path = u"/org/freedesktop/portal/desktop"_s;

} // namespace

FakePortal::FakePortal(const PrivateBus &bus, const PortalSettings &settings)
    : settings_(settings)
    , service_(bus, u"org.freedesktop.portal.Desktop"_s, path, this, QDBusConnection::ExportScriptableSlots)
{
}

void FakePortal::set(const QString &group, const QString &name, const QVariant &value)
{
    settings_[group].insert(name, value);
    auto signal = QDBusMessage::createSignal(path, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
    signal << group << name << QVariant::fromValue(QDBusVariant(value));
    service_.connection().send(signal);
}

QDBusVariant FakePortal::Read(const QString &group, const QString &name)
{
    ++reads_;
    const auto value = settings_.value(group).value(name);
    if (!value.isValid()) {
        sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"Requested setting not found"_s);
        return QDBusVariant(0);
    }
    // Portals wrap the value twice.
    return QDBusVariant(QVariant::fromValue(QDBusVariant(value)));
}

} // namespace kelvo
