#pragma once

#include <QObject>
#include <QProcess>
#include <QStringList>

namespace kelvo {

/// Watches what Kelvo asks the desktop's notification service to show, from outside: on the session bus.
class NotificationWatch : public QObject
{
    Q_OBJECT

public:
    explicit NotificationWatch(QObject *parent = nullptr);
    ~NotificationWatch() override;

    /// Begins to watch. False, with the reason in `errorString`, when the bus cannot be watched.
    bool start();
    QString errorString() const { return errorString_; }

    /// Every notification so far, as "title: body".
    const QStringList &seen() const { return seen_; }

Q_SIGNALS:
    /// One more was seen.
    void notified();

private:
    void readLines();
    void readLine(const QString &line);

    QProcess monitor_;
    QString errorString_;
    QStringList texts_; ///< the text arguments read so far of the call at hand
    bool inCall_ = false;
    QStringList seen_;
};

} // namespace kelvo
