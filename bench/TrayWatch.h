#pragma once

#include <QDBusMessage>
#include <QObject>

namespace kelvo {

/// Tells when an icon is registered in the tray of the session.
class TrayWatch : public QObject
{
    Q_OBJECT

public:
    explicit TrayWatch(QObject *parent = nullptr);

    /// A call of a method of the icon that this process has in the tray. Fails where it has none.
    static QDBusMessage callOfItem(qint64 processId, const QString &method);

Q_SIGNALS:
    void registered();

private Q_SLOTS:
    void itemRegistered(const QString &service);
};

} // namespace kelvo
