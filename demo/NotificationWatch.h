#pragma once

#include <QObject>
#include <QProcess>
#include <QStringList>

namespace kelvo {

/// Observes the notifications that Kelvo sends to the desktop, from outside, by monitoring the session bus.
class NotificationWatch : public QObject
{
    Q_OBJECT

public:
    explicit NotificationWatch(QObject *parent = nullptr);
    ~NotificationWatch() override;

    /// Starts dbus-monitor. Returns false, with the reason in `errorString`, when the bus cannot be monitored.
    bool start();
    QString errorString() const { return errorString_; }

    /// All notifications so far, each as "title: body".
    const QStringList &seen() const { return seen_; }

Q_SIGNALS:
    /// A notification was seen.
    void notified();

private:
    void readLines();
    void readLine(const QString &line);

    QProcess monitor_;
    QString errorString_;
    QStringList texts_; ///< the string arguments of the current call that were read so far
    bool inCall_ = false;
    QStringList seen_;
};

} // namespace kelvo
