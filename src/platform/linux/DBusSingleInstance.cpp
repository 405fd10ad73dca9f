#include "platform/linux/DBusSingleInstance.h"

#include "platform/linux/ActivationToken.h"

#include <QDBusConnectionInterface>
#include <QFile>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto name = u"app.kelvo.Kelvo"_s;
const auto path = u"/app/kelvo/Kelvo"_s;

// The keys of the platform data.
const auto activationToken = u"activation-token"_s;
const auto startupId = u"desktop-startup-id"_s;

/// Returns the value with which this process was started. Qt removes the startup id from the environment.
QString startedWith(QByteArrayView variable)
{
    QFile environment(u"/proc/self/environ"_s);
    if (environment.open(QIODevice::ReadOnly)) {
        for (const auto &entry : environment.readAll().split('\0')) {
            const auto equals = entry.indexOf('=');
            if (entry.first(qMax(equals, 0)) == variable) {
                return QString::fromUtf8(entry.sliced(equals + 1));
            }
        }
    }
    return {};
}

/// What the desktop gave this start, so that the window that it opens may take the focus.
QVariantMap platformData()
{
    QVariantMap data;
    const auto insert = [&data](const QString &key, QByteArrayView variable) {
        if (const auto value = startedWith(variable); !value.isEmpty()) {
            data.insert(key, value);
        }
    };
    insert(activationToken, ActivationToken::variable);
    insert(startupId, ActivationToken::startupIdVariable);
    return data;
}

} // namespace

DBusSingleInstance::DBusSingleInstance(std::shared_ptr<BusConnection> sessionBus, std::chrono::milliseconds timeout)
    : bus_(std::move(sessionBus))
    , timeout_(timeout)
{
    connect(bus_.get(), &BusConnection::disconnected, this, &DBusSingleInstance::withdraw);
}

DBusSingleInstance::~DBusSingleInstance()
{
    withdraw();
}

SingleInstance::Outcome DBusSingleInstance::acquire()
{
    if (bus_->isConnected() && !claim()) {
        if (handOver()) {
            return Outcome::handedOver;
        }
        // The owner may exit between the two calls. Then the name is free.
        if (!claim()) {
            return Outcome::noAnswer;
        }
    }
    // A bus that starts or restarts later does not know this instance yet.
    connect(bus_.get(), &BusConnection::connected, this, &DBusSingleInstance::claim, Qt::UniqueConnection);
    return Outcome::acquired;
}

void DBusSingleInstance::Activate(const QVariantMap &platformData)
{
    activate(platformData);
}

void DBusSingleInstance::Open(const QStringList &, const QVariantMap &platformData)
{
    activate(platformData);
}

void DBusSingleInstance::ActivateAction(const QString &, const QVariantList &, const QVariantMap &platformData)
{
    activate(platformData);
}

void DBusSingleInstance::activate(const QVariantMap &platformData)
{
    // GLib before 2.76 sends the activation token of Wayland as the startup id.
    const auto token = platformData.value(activationToken, platformData.value(startupId)).toString();
    if (!token.isEmpty()) {
        ActivationToken::keep(token);
    }
    Q_EMIT activationRequested();
}

bool DBusSingleInstance::claim()
{
    auto connection = bus_->connection();
    // Register the object before the name: a caller that sees the name may call at once.
    connection.registerObject(path, this, QDBusConnection::ExportScriptableSlots);
    const auto answer = connection.interface()->registerService(name);
    return !answer.isValid() || answer.value() == QDBusConnectionInterface::ServiceRegistered;
}

void DBusSingleInstance::withdraw()
{
    auto connection = bus_->connection();
    if (bus_->isConnected()) {
        connection.unregisterService(name);
    }
    connection.unregisterObject(path);
}

bool DBusSingleInstance::handOver() const
{
    auto activate = QDBusMessage::createMethodCall(name, path, u"org.freedesktop.Application"_s, u"Activate"_s);
    activate.setAutoStartService(false);
    activate << platformData();
    const auto answer = bus_->connection().call(activate, QDBus::Block, static_cast<int>(timeout_.count()));
    return answer.type() == QDBusMessage::ReplyMessage;
}

} // namespace kelvo
