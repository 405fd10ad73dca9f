#include "platform/linux/BusNameOwner.h"

#include <QDBusPendingCall>

#include <utility>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

QDBusMessage busCall(const QString &method)
{
    return QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                          u"org.freedesktop.DBus"_s, method);
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
    connect(bus_.get(), &BusConnection::connected, this, &BusNameOwner::follow);
    connect(bus_.get(), &BusConnection::disconnected, this, [this] {
        watcher_.reset();
        set({});
    });
    if (bus_->isConnected()) {
        follow();
    }
}

void BusNameOwner::follow()
{
    watcher_ = std::make_unique<QDBusServiceWatcher>(name_, bus_->connection(),
                                                     QDBusServiceWatcher::WatchForOwnerChange);
    connect(watcher_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) { set(owner); });

    bus_->call(ownerQuestion(name_), watcher_.get(), [this](const QDBusMessage &answer) {
        // The watcher reports every change since the call was sent, so an owner that it set is newer than this answer.
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
    if (isOwned()) {
        bus_->subscribe(owner_, path, interface, member, receiver, slot);
    }
}

void BusNameOwner::set(const QString &owner)
{
    if (owner_ == owner) {
        return;
    }
    const auto before = std::exchange(owner_, owner);
    for (const auto &[path, interface, member, receiver, slot] : std::as_const(signals_)) {
        if (!before.isEmpty()) {
            bus_->unsubscribe(before, path, interface, member, receiver, slot);
        }
        if (isOwned()) {
            bus_->subscribe(owner_, path, interface, member, receiver, slot);
        }
    }
    Q_EMIT changed();
}

} // namespace kelvo
