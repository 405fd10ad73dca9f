#pragma once

#include <QFuture>
#include <QObject>
#include <QString>
#include <QStringList>

namespace kelvo {

/// The settings of the desktop that hide the notifications of this program. They are known on GNOME and Plasma.
class NotificationSettings : public QObject
{
    Q_OBJECT

public:
    /// `desktops` are the names of the desktop in XDG_CURRENT_DESKTOP.
    explicit NotificationSettings(const QStringList &desktops);
    /// Ends the processes that read the settings.
    ~NotificationSettings() override;

    /// Reads the settings; see NotificationCenter::turnedOffIn.
    QFuture<QString> turnedOffIn();

private:
    QFuture<bool> areOffInGnome();

    bool isGnome_;
    bool isPlasma_;
};

} // namespace kelvo
