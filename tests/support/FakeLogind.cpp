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
}

void FakeLogind::prepareForSleep(bool start)
{
    auto signal = QDBusMessage::createSignal(path, u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s);
    signal << start;
    service_.connection().send(signal);
}

} // namespace kelvo
