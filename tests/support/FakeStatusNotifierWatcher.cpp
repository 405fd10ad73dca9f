#include "support/FakeStatusNotifierWatcher.h"

#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto name = u"org.kde.StatusNotifierWatcher"_s;
const auto path = u"/StatusNotifierWatcher"_s;

} // namespace

FakeStatusNotifierWatcher::FakeStatusNotifierWatcher(const PrivateBus &bus, Host host)
    : hasHost_(host == Host::registered)
    , service_(bus, name, path, this,
               QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportScriptableProperties)
{
}

void FakeStatusNotifierWatcher::registerHost()
{
    hasHost_ = true;
    service_.connection().send(QDBusMessage::createSignal(path, name, u"StatusNotifierHostRegistered"_s));
}

void FakeStatusNotifierWatcher::unregisterHost()
{
    hasHost_ = false;
    service_.connection().send(QDBusMessage::createSignal(path, name, u"StatusNotifierHostUnregistered"_s));
}

void FakeStatusNotifierWatcher::RegisterStatusNotifierItem(const QString &)
{
    items_.append(message().service());
}

bool FakeStatusNotifierWatcher::readHost()
{
    ++questions_;
    return hasHost_;
}

} // namespace kelvo
