#include "TrayWatch.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>

namespace kelvo {

using namespace Qt::StringLiterals;

TrayWatch::TrayWatch(QObject *parent)
    : QObject(parent)
{
    const bool connected = QDBusConnection::sessionBus().connect(
        u"org.kde.StatusNotifierWatcher"_s, u"/StatusNotifierWatcher"_s, u"org.kde.StatusNotifierWatcher"_s,
        u"StatusNotifierItemRegistered"_s, this, SLOT(itemRegistered(QString)));
    if (!connected) {
        qFatal("The tray of this session cannot be watched");
    }
}

QDBusMessage TrayWatch::callOfItem(qint64 processId, const QString &method)
{
    const auto bus = QDBusConnection::sessionBus();
    const QDBusInterface watcher(u"org.kde.StatusNotifierWatcher"_s, u"/StatusNotifierWatcher"_s,
                                 u"org.kde.StatusNotifierWatcher"_s, bus);
    // Each entry is a bus name followed by the path of the object.
    for (const auto &item : watcher.property("RegisteredStatusNotifierItems").toStringList()) {
        const auto name = item.section(u'/', 0, 0);
        if (bus.interface()->servicePid(name) == processId) {
            return QDBusMessage::createMethodCall(name, item.sliced(name.size()), u"org.kde.StatusNotifierItem"_s,
                                                  method);
        }
    }
    qFatal("The process %lld has no icon in the tray", static_cast<long long>(processId));
}

void TrayWatch::itemRegistered(const QString &)
{
    Q_EMIT registered();
}

} // namespace kelvo
