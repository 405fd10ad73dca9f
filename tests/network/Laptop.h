#pragma once

#include "Network.h"

#include "monitor/RingState.h"
#include "support/FakeLogind.h"
#include "support/FakeNotificationServer.h"
#include "support/FakeStatusNotifierWatcher.h"
#include "support/PrivateBus.h"

#include <QDBusPendingCall>
#include <QElapsedTimer>
#include <QObject>
#include <QTemporaryDir>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

namespace kelvo {

/// The real program on the laptop, operated and observed from outside through a fake tray, notification service and login
/// manager on private buses.
class Laptop : public QObject
{
    Q_OBJECT

public:
    using Seconds = std::chrono::duration<double>;

    explicit Laptop(const Network &network);
    ~Laptop() override;

    void setEnvironment(const QString &name, const QString &value);
    /// Adds lines to the settings file. Only Claude is watched.
    void setSettings(const QByteArray &lines) { settings_ = lines; }
    /// Sets the check interval to five minutes instead of one.
    void setFiveMinutes() { fiveMinutes_ = true; }
    void start();
    /// Ends the program and returns how long it took; nullopt when it took longer than `atMost`.
    std::optional<Seconds> quit(Seconds atMost);

    // Actions of the user.

    void sleep() { logind_.prepareForSleep(true); }
    void wake() { logind_.prepareForSleep(false); }
    void openPopover() { activate(); }
    void closePopover() { activate(); }

    // What the user sees.

    /// The last ring that the tray received; nullopt before the first.
    std::optional<RingState> ring() const { return ring_; }
    QString toolTip() const { return toolTip_; }
    /// The titles of all alerts so far.
    QStringList alerts() const;

    /// Waits until `condition` holds. Returns how long it took; nullopt when it took longer than `atMost`.
    static std::optional<Seconds> await(const std::function<bool()> &condition, Seconds atMost);
    std::optional<Seconds> awaitRing(RingState state, Seconds atMost);
    std::optional<Seconds> awaitAlert(const QString &title, Seconds atMost);
    /// Processes events for this time.
    static void pass(Seconds time);

    // Measurements.

    /// The longest time that the main thread took to answer a D-Bus call since `beginToMeasure`.
    Seconds longestPause() const;
    /// The longest processor time of the main thread between two answers since `beginToMeasure`.
    Seconds longestWork() const { return longestWork_; }
    /// The peak memory since `beginToMeasure` minus the memory at that moment, in bytes.
    qint64 memoryGrowth() const;
    /// Starts the measurements. With `closely`, sends the next D-Bus call as soon as the previous one is answered.
    void beginToMeasure(bool closely = false);

private:
    struct RunningBus : PrivateBus
    {
        RunningBus() { start(); }
    };

    void activate();
    void ask();
    void hear(QDBusPendingCallWatcher *answer);
    double mainThreadTime() const;
    qint64 memory(const QByteArray &key) const;

    QTemporaryDir home_;
    RunningBus session_;
    RunningBus system_;
    FakeStatusNotifierWatcher tray_;
    FakeNotificationServer notifications_;
    FakeLogind logind_;
    QProcess program_;
    QByteArray settings_;
    bool fiveMinutes_ = false;

    QTimer nextQuestion_;
    QElapsedTimer asked_;
    bool asking_ = false;
    double workBefore_ = 0;
    std::optional<RingState> ring_;
    QString toolTip_;
    Seconds longestPause_{0};
    Seconds longestWork_{0};
    qint64 memoryBefore_ = 0;
};

} // namespace kelvo
