#include "support/FakePortal.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto path = u"/org/freedesktop/portal/desktop"_s;

} // namespace

FakePortal::FakePortal(const PrivateBus &bus, const PortalSettings &settings)
    : settings_(settings)
    , service_((qDBusRegisterMetaType<PortalSettings>(), bus), u"org.freedesktop.portal.Desktop"_s, path, this,
               QDBusConnection::ExportScriptableSlots)
{
}

void FakePortal::set(const QString &group, const QString &name, const QVariant &value)
{
    settings_[group].insert(name, value);
    auto signal = QDBusMessage::createSignal(path, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
    signal << group << name << QVariant::fromValue(QDBusVariant(value));
    service_.connection().send(signal);
}

PortalSettings FakePortal::ReadAll(const QStringList &groups)
{
    ++reads_;
    PortalSettings answer;
    for (const auto &group : groups) {
        if (settings_.contains(group)) {
            answer.insert(group, settings_.value(group));
        }
    }
    return answer;
}

} // namespace kelvo
