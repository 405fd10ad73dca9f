#include "support/FakeLogind.h"

#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto path = u"/org/freedesktop/login1"_s;

} // namespace

FakeLogind::FakeLogind(const PrivateBus &bus)
    : service_(bus, u"org.freedesktop.login1"_s, path, this, QDBusConnection::ExportScriptableSlots)
{
    service_.connection().registerObject(path + "/session/auto"_L1, &session_, QDBusConnection::ExportAllProperties);
}

void FakeLogind::prepareForSleep(bool start)
{
    auto signal = QDBusMessage::createSignal(path, u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s);
    signal << start;
    service_.connection().send(signal);
}

void FakeLogind::lock()
{
    session_.lock();
    announceLock(u"_32"_s);
}

void FakeLogind::lockAnotherSession()
{
    announceLock(u"_31"_s);
}

void FakeLogind::announceLock(const QString &session)
{
    auto signal = QDBusMessage::createSignal(path + "/session/"_L1 + session, u"org.freedesktop.DBus.Properties"_s,
                                             u"PropertiesChanged"_s);
    signal << u"org.freedesktop.login1.Session"_s << QVariantMap{{u"LockedHint"_s, true}} << QStringList();
    service_.connection().send(signal);
}

} // namespace kelvo
