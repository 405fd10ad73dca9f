#include "TrayWatch.h"

#include <QDBusConnection>

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

void TrayWatch::itemRegistered(const QString &)
{
    Q_EMIT registered();
}

} // namespace kelvo
