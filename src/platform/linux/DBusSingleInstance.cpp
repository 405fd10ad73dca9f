#include "platform/linux/DBusSingleInstance.h"

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

const auto name = u"app.kelvo.Kelvo"_s;
const auto path = u"/app/kelvo/Kelvo"_s;

constexpr auto handOverTimeout = 5000ms;

} // namespace

DBusSingleInstance::DBusSingleInstance(std::shared_ptr<BusConnection> sessionBus)
    : bus_(std::move(sessionBus))
{
}

DBusSingleInstance::~DBusSingleInstance()
{
    if (bus_->isConnected()) {
        auto connection = bus_->connection();
        connection.unregisterService(name);
        connection.unregisterObject(path);
    }
}

bool DBusSingleInstance::acquire()
{
    if (bus_->isConnected() && !claim()) {
        // The owner may exit between the two calls. Then the name is free, and the second claim succeeds.
        if (handOver() || !claim()) {
            return false;
        }
    }
    // A bus that starts or restarts later does not know this instance yet.
    connect(bus_.get(), &BusConnection::connected, this, &DBusSingleInstance::claim, Qt::UniqueConnection);
    return true;
}

void DBusSingleInstance::Activate(const QVariantMap &)
{
    Q_EMIT activationRequested();
}

void DBusSingleInstance::Open(const QStringList &, const QVariantMap &)
{
    Q_EMIT activationRequested();
}

void DBusSingleInstance::ActivateAction(const QString &, const QVariantList &, const QVariantMap &)
{
    Q_EMIT activationRequested();
}

bool DBusSingleInstance::claim()
{
    auto connection = bus_->connection();
    // Register the object before the name: a caller that sees the name may call at once.
    connection.registerObject(path, this, QDBusConnection::ExportScriptableSlots);
    return connection.registerService(name);
}

bool DBusSingleInstance::handOver() const
{
    auto activate = QDBusMessage::createMethodCall(name, path, u"org.freedesktop.Application"_s, u"Activate"_s);
    activate.setAutoStartService(false);
    activate << QVariantMap();
    const auto answer = bus_->connection().call(activate, QDBus::Block, handOverTimeout.count());
    return answer.type() == QDBusMessage::ReplyMessage;
}

} // namespace kelvo
