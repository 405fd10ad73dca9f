#pragma once

#include "NotificationWatch.h"

#include <QProcess>

namespace kelvo {

/// Observes the notifications from outside of the program, by monitoring the session bus.
class BusNotificationWatch : public NotificationWatch
{
    Q_OBJECT

public:
    BusNotificationWatch();
    ~BusNotificationWatch() override;

    /// Starts dbus-monitor.
    bool start() override;

private:
    void readLines();
    void readLine(const QString &line);

    QProcess monitor_;
    QStringList texts_; ///< the string arguments of the current call that were read so far
    bool inCall_ = false;
};

} // namespace kelvo
