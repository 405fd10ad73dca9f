#include "platform/LockWatch.h"

#include "platform/linux/BusConnection.h"

#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto properties = u"org.freedesktop.DBus.Properties"_s;
const auto changed = u"PropertiesChanged"_s;
const auto session = u"org.freedesktop.login1.Session"_s;

} // namespace

/// Listens to the property LockedHint of the login manager's sessions (org.freedesktop.login1), which lock screens set.
class LockWatch::Native : public QObject
{
    Q_OBJECT

public:
    explicit Native(LockWatch &watch)
        : watch_(watch)
        , bus_(BusConnection::system())
    {
    }

    void start()
    {
        if (!isListening_) {
            isListening_ = true;
            // Only the login manager knows the path of this process's session, so this hears of all sessions.
            bus_->subscribe({}, properties, changed, this, SLOT(change(QString, QVariantMap)), session);
        }
    }

    void stop()
    {
        isListening_ = false;
        bus_->unsubscribe({}, properties, changed, this, SLOT(change(QString, QVariantMap)), session);
    }

private Q_SLOTS:
    void change(const QString &, const QVariantMap &values)
    {
        if (values.value("LockedHint"_L1).toBool()) {
            ask();
        }
    }

private:
    void ask()
    {
        auto get = QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s,
                                                  u"/org/freedesktop/login1/session/auto"_s, properties, u"Get"_s);
        get << session << u"LockedHint"_s;
        bus_->call(get, this, [this](const QDBusMessage &reply) {
            if (isListening_ && reply.arguments().value(0).value<QDBusVariant>().variant().toBool()) {
                Q_EMIT watch_.locked();
            }
        });
    }

    LockWatch &watch_;
    std::shared_ptr<BusConnection> bus_;
    bool isListening_ = false;
};

LockWatch::LockWatch(QObject *parent)
    : QObject(parent)
{
}

LockWatch::~LockWatch() = default;

void LockWatch::start()
{
    if (!native_) {
        native_ = std::make_unique<Native>(*this);
    }
    native_->start();
}

void LockWatch::stop()
{
    if (native_) {
        native_->stop();
    }
}

} // namespace kelvo

#include "LockWatch.moc"
