#pragma once

#include <QObject>

namespace kelvo {

/// Reports when the machine goes to sleep and when it wakes.
/// When the system cannot report this (no bus, no login manager), no signal is emitted and the machine counts as awake.
class SleepWake : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    /// The machine is about to sleep.
    void willSleep();
    /// The machine woke up. Also emitted when the service that reports sleep disappears after a `willSleep`, because
    /// the wake-up would then never be reported.
    void didWake();
};

} // namespace kelvo
