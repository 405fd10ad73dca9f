#pragma once

#include <QObject>

namespace kelvo {

/// Tells when the machine goes to sleep and when it wakes.
/// Where the system cannot tell (no bus, no session manager) it stays silent, and the machine counts as awake.
class SleepWake : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    /// The machine is about to sleep.
    void willSleep();
    /// The machine woke. Also emitted when, after a `willSleep`, the source of these messages went away, so that
    /// nobody waits for a wake that is never told.
    void didWake();
};

} // namespace kelvo
