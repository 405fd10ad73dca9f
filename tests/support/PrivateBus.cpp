#include "support/PrivateBus.h"

#include <QDBusMessage>
#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

constexpr auto configuration = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>%1</listen>
  <servicedir>%2</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>%3
  </policy>
</busconfig>
)"_L1;

void write(const QString &path, const QString &text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

} // namespace

PrivateBus::PrivateBus()
{
    QDir(directory_.path()).mkdir(u"services"_s);
    configure({});
}

PrivateBus::~PrivateBus()
{
    kill();
}

void PrivateBus::refuse(const QString &name)
{
    configure(u"<deny own=\"%1\"/>"_s.arg(name));
}

void PrivateBus::configure(const QString &policy)
{
    write(directory_.filePath(u"bus.conf"_s),
          QString(configuration).arg(address(), directory_.filePath(u"services"_s), policy));
}

void PrivateBus::start()
{
    QDir(directory_.path()).mkdir(u"run"_s);
    QFile::remove(socketPath());
    // When the tests run as root, the daemon warns about limits that it may not raise.
    daemon_.setStandardErrorFile(QProcess::nullDevice());
    daemon_.start(u"dbus-daemon"_s,
                  {u"--config-file"_s, directory_.filePath(u"bus.conf"_s), u"--nofork"_s, u"--nopidfile"_s,
                   u"--print-address"_s});
    if (!daemon_.waitForReadyRead(10000)) {
        qFatal("dbus-daemon does not start: %s", qPrintable(daemon_.errorString()));
    }
}

void PrivateBus::kill()
{
    if (daemon_.state() != QProcess::NotRunning) {
        daemon_.kill();
        daemon_.waitForFinished();
    }
}

QString PrivateBus::address() const
{
    return u"unix:path="_s + socketPath();
}

QDBusConnection PrivateBus::connect() const
{
    static int serial = 0;
    auto connection = QDBusConnection::connectToBus(address(), u"test-%1"_s.arg(++serial));
    if (!connection.isConnected()) {
        qFatal("cannot connect to the private bus");
    }
    return connection;
}

void PrivateBus::addActivatable(const QString &name, const QString &command)
{
    write(directory_.filePath(u"services/%1.service"_s.arg(name)),
          u"[D-BUS Service]\nName=%1\nExec=%2\n"_s.arg(name, command));
    auto connection = connect();
    connection.call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                   u"org.freedesktop.DBus"_s, u"ReloadConfig"_s));
    QDBusConnection::disconnectFromBus(connection.name());
}

QString PrivateBus::socketPath() const
{
    return directory_.filePath(u"run/bus"_s);
}

BusService::BusService(const PrivateBus &bus, const QString &name, const QString &path, QObject *object,
                       QDBusConnection::RegisterOptions options)
    : connection_(bus.connect())
{
    if (!connection_.registerObject(path, object, options) || !connection_.registerService(name)) {
        qFatal("cannot stand on the private bus as %s", qPrintable(name));
    }
}

BusService::~BusService()
{
    // Qt closes the connection later, in another thread, and uses the objects there that it still has.
    connection_.unregisterObject(u"/"_s, QDBusConnection::UnregisterTree);
    QDBusConnection::disconnectFromBus(connection_.name());
}

} // namespace kelvo
