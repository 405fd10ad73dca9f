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

/// The real program on the laptop, seen and handled from outside: by the tray, the notification service and the login
/// manager on buses of its own.
class Laptop : public QObject
{
    Q_OBJECT

public:
    using Seconds = std::chrono::duration<double>;

    explicit Laptop(const Network &network);
    ~Laptop() override;

    void setEnvironment(const QString &name, const QString &value);
    /// Further lines of the settings file. One service is watched, Claude.
    void setSettings(const QByteArray &lines) { settings_ = lines; }
    /// The pace while all is well; otherwise a minute.
    void setFiveMinutes() { fiveMinutes_ = true; }
    void start();
    /// Asks it to end. Nothing where it does not within that time.
    std::optional<Seconds> quit(Seconds atMost);

    // What a person does.

    void sleep() { logind_.prepareForSleep(true); }
    void wake() { logind_.prepareForSleep(false); }
    void openPopover() { activate(); }
    void closePopover() { activate(); }

    // What a person sees.

    /// The ring as the tray last got it; nothing before the first.
    std::optional<RingState> ring() const { return ring_; }
    QString toolTip() const { return toolTip_; }
    /// The titles of all alerts so far.
    QStringList alerts() const;

    /// Waits until it is so. Gives how long it took, or nothing where it took longer than that.
    static std::optional<Seconds> await(const std::function<bool()> &condition, Seconds atMost);
    std::optional<Seconds> awaitRing(RingState state, Seconds atMost);
    std::optional<Seconds> awaitAlert(const QString &title, Seconds atMost);
    /// Lets that time pass.
    static void pass(Seconds time);

    // What a person would feel.

    /// How long the main thread left a question unanswered at most since `beginToMeasure`.
    Seconds longestPause() const;
    /// How long the main thread computed at most between two answers since `beginToMeasure`.
    Seconds longestWork() const { return longestWork_; }
    /// The peak of the memory since `beginToMeasure` above what it was then, bytes.
    qint64 memoryGrowth() const;
    /// Asks as fast as it answers when `closely`.
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
