#pragma once

#include <QObject>

namespace kelvo {

/// Tells when an icon is registered in the tray of the session.
class TrayWatch : public QObject
{
    Q_OBJECT

public:
    explicit TrayWatch(QObject *parent = nullptr);

Q_SIGNALS:
    void registered();

private Q_SLOTS:
    void itemRegistered(const QString &service);
};

} // namespace kelvo
