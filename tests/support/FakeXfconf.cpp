#include "support/FakeXfconf.h"

#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto path = u"/org/xfce/Xfconf"_s;
const auto name = u"org.xfce.Xfconf"_s;

} // namespace

FakeXfconf::FakeXfconf(const PrivateBus &bus)
    : service_(bus, name, path, this, QDBusConnection::ExportScriptableSlots)
{
}

void FakeXfconf::set(const QString &channel, const QString &property, const QVariant &value)
{
    properties_.insert({channel, property}, value);
    auto signal = QDBusMessage::createSignal(path, name, u"PropertyChanged"_s);
    signal << channel << property << QVariant::fromValue(QDBusVariant(value));
    service_.connection().send(signal);
}

void FakeXfconf::remove(const QString &channel, const QString &property)
{
    properties_.remove({channel, property});
    auto signal = QDBusMessage::createSignal(path, name, u"PropertyRemoved"_s);
    signal << channel << property;
    service_.connection().send(signal);
}

QDBusVariant FakeXfconf::GetProperty(const QString &channel, const QString &property)
{
    ++reads_;
    const auto value = properties_.value({channel, property});
    if (!value.isValid()) {
        sendErrorReply(u"org.xfce.Xfconf.Error.PropertyNotFound"_s, property);
        return QDBusVariant(QString());
    }
    return QDBusVariant(value);
}

} // namespace kelvo
