#include "linux/BusNotificationWatch.h"

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

/// The string arguments of org.freedesktop.Notifications.Notify that precede its list of actions, in order.
enum NotifyText { appName, appIcon, summary, body, notifyTextCount };

} // namespace

BusNotificationWatch::BusNotificationWatch()
{
    connect(&monitor_, &QProcess::readyReadStandardOutput, this, &BusNotificationWatch::readLines);
}

BusNotificationWatch::~BusNotificationWatch()
{
    monitor_.disconnect(this);
    monitor_.kill();
    monitor_.waitForFinished();
}

bool BusNotificationWatch::start()
{
    // dbus-monitor first prints the signals of its own connection. From then on it sees every call.
    monitor_.start(u"dbus-monitor"_s,
                   {u"--session"_s, u"type='method_call',interface='org.freedesktop.Notifications',member='Notify'"_s});
    if (!monitor_.waitForStarted() || !monitor_.waitForReadyRead()) {
        fail(monitor_.error() == QProcess::FailedToStart ? u"dbus-monitor is not installed"_s
                                                         : u"the session bus cannot be watched"_s);
        return false;
    }
    return true;
}

void BusNotificationWatch::readLines()
{
    while (monitor_.canReadLine()) {
        readLine(QString::fromUtf8(monitor_.readLine()).trimmed());
    }
}

void BusNotificationWatch::readLine(const QString &line)
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
        see(texts_[summary], texts_[body]);
    }
}

} // namespace kelvo
