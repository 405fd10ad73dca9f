#include "platform/linux/BusNameOwner.h"

#include <QDBusPendingCall>
#include <QMetaMethod>
#include <QVarLengthArray>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto busName = u"org.freedesktop.DBus"_s;
const auto busPath = u"/org/freedesktop/DBus"_s;

QDBusMessage busCall(const QString &method)
{
    return QDBusMessage::createMethodCall(busName, busPath, busName, method);
}

/// Calls the slot with the arguments of the signal, or with the signal itself. Does nothing if the arguments have other
/// types.
void deliver(const QDBusMessage &signal, QObject *receiver, const char *slot)
{
    const auto method = receiver->metaObject()->method(
        receiver->metaObject()->indexOfMethod(QMetaObject::normalizedSignature(slot + 1)));
    auto message = signal;
    auto arguments = signal.arguments();
    QVarLengthArray<void *, 4> parameters{nullptr};
    for (int i = 0; i < method.parameterCount(); ++i) {
        const auto type = method.parameterMetaType(i);
        if (type == QMetaType::fromType<QDBusMessage>()) {
            parameters.append(&message);
        } else if (i < arguments.size() && arguments.at(i).metaType() == type) {
            parameters.append(arguments[i].data());
        } else {
            return;
        }
    }
    QMetaObject::metacall(receiver, QMetaObject::InvokeMetaMethod, method.methodIndex(), parameters.data());
}

} // namespace

QDBusMessage ownerQuestion(const QString &name)
{
    auto question = busCall(u"GetNameOwner"_s);
    question << name;
    return question;
}

BusNameOwner::BusNameOwner(std::shared_ptr<BusConnection> bus, const QString &name, Start start)
    : bus_(std::move(bus))
    , name_(name)
    , start_(start)
{
    bus_->subscribe(busPath, busName, u"NameOwnerChanged"_s, this, SLOT(onOwnerChanged(QDBusMessage)), name_);
    connect(bus_.get(), &BusConnection::connected, this, &BusNameOwner::follow);
    connect(bus_.get(), &BusConnection::disconnected, this, [this] {
        question_.reset();
        set({});
    });
    if (bus_->isConnected()) {
        follow();
    }
}

void BusNameOwner::follow()
{
    question_ = std::make_unique<QObject>();
    bus_->call(ownerQuestion(name_), question_.get(), [this](const QDBusMessage &answer) {
        // The bus reports every change since the call was sent, so an owner that it reported is newer than this answer.
        if (answer.type() == QDBusMessage::ReplyMessage && owner_.isEmpty()) {
            set(answer.arguments().value(0).toString());
        }
    });
    if (start_ == Start::onDemand) {
        auto start = busCall(u"StartServiceByName"_s);
        start << name_ << 0U;
        bus_->connection().asyncCall(start);
    }
}

void BusNameOwner::listen(const QString &path, const QString &interface, const QString &member, QObject *receiver,
                          const char *slot)
{
    signals_.append({path, interface, member, receiver, slot});
    bus_->subscribe(path, interface, member, this, SLOT(onSignal(QDBusMessage)));
}

void BusNameOwner::onOwnerChanged(const QDBusMessage &signal)
{
    const auto arguments = signal.arguments();
    if (signal.service() == busName && arguments.value(0).toString() == name_) {
        set(arguments.value(2).toString());
    }
}

void BusNameOwner::onSignal(const QDBusMessage &signal)
{
    // Any peer can send such a signal.
    if (!isOwned() || signal.service() != owner_) {
        return;
    }
    for (const auto &each : QList(signals_)) {
        if (each.member == signal.member() && each.interface == signal.interface() && each.path == signal.path()) {
            deliver(signal, each.receiver, each.slot);
        }
    }
}

void BusNameOwner::set(const QString &owner)
{
    if (owner_ != owner) {
        owner_ = owner;
        Q_EMIT changed();
    }
}

} // namespace kelvo
