#pragma once

#include "support/PrivateBus.h"

#include <QObject>

namespace kelvo {

/// The session of this process at a fake login manager.
class FakeLoginSession : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Session")
    Q_PROPERTY(bool LockedHint READ lockedHint CONSTANT)

public:
    void lock() { isLocked_ = true; }
    int asked() const { return asked_; }

private:
    bool lockedHint()
    {
        ++asked_;
        return isLocked_;
    }

    bool isLocked_ = false;
    int asked_ = 0;
};

/// A fake login manager on a private bus.
class FakeLogind : public QObject
{
    Q_OBJECT

public:
    explicit FakeLogind(const PrivateBus &bus);

    void prepareForSleep(bool start);
    void lock();
    /// Locks the session of another user.
    void lockAnotherSession();
    /// How often it was asked whether the session is locked.
    int asked() const { return session_.asked(); }

private:
    void announceLock(const QString &session);

    BusService service_;
    FakeLoginSession session_;
};

} // namespace kelvo
