#include "NotificationWatch.h"

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

/// The string arguments of org.freedesktop.Notifications.Notify that precede its list of actions, in order.
enum NotifyText { appName, appIcon, summary, body, notifyTextCount };

} // namespace

NotificationWatch::NotificationWatch(QObject *parent)
    : QObject(parent)
{
    connect(&monitor_, &QProcess::readyReadStandardOutput, this, &NotificationWatch::readLines);
}

NotificationWatch::~NotificationWatch()
{
    monitor_.disconnect(this);
    monitor_.kill();
    monitor_.waitForFinished();
}

bool NotificationWatch::start()
{
    // dbus-monitor first prints the signals of its own connection. From then on it sees every call.
    monitor_.start(u"dbus-monitor"_s,
                   {u"--session"_s, u"type='method_call',interface='org.freedesktop.Notifications',member='Notify'"_s});
    if (!monitor_.waitForStarted() || !monitor_.waitForReadyRead()) {
        errorString_ = monitor_.error() == QProcess::FailedToStart ? u"dbus-monitor is not installed"_s
                                                                   : u"the session bus cannot be watched"_s;
        return false;
    }
    return true;
}

void NotificationWatch::readLines()
{
    while (monitor_.canReadLine()) {
        readLine(QString::fromUtf8(monitor_.readLine()).trimmed());
    }
}

void NotificationWatch::readLine(const QString &line)
{
    static const auto textStart = "string \""_L1;
    if (line.startsWith("method call"_L1)) {
        texts_.clear();
        inCall_ = line.endsWith("member=Notify"_L1);
        return;
    }
    if (!inCall_ || !line.startsWith(textStart)) {
        return;
    }
    texts_.append(line.sliced(textStart.size()).chopped(1));
    if (texts_.size() < notifyTextCount) {
        return;
    }
    inCall_ = false;
    if (texts_[appName] == "Kelvo"_L1) {
        seen_.append(texts_[summary] + ": "_L1 + texts_[body]);
        Q_EMIT notified();
    }
}

} // namespace kelvo
