#pragma once

#include <QDBusMessage>
#include <QObject>

namespace kelvo {

/// Reports when an icon is registered in the tray of the session.
class TrayWatch : public QObject
{
    Q_OBJECT

public:
    explicit TrayWatch(QObject *parent = nullptr);

    /// Returns a call of a method of the tray icon of a process. Ends the program when the process has no icon.
    static QDBusMessage callOfItem(qint64 processId, const QString &method);

Q_SIGNALS:
    void registered();

private Q_SLOTS:
    void itemRegistered(const QString &service);
};

} // namespace kelvo
