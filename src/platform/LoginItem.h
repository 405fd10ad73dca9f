#pragma once

#include <QObject>

namespace kelvo {

/// The registration of this application to start at login. The system owns the state.
class LoginItem : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Whether the application is registered. Each call reads the state from the system.
    virtual bool isEnabled() const = 0;
    /// Registers the application. Returns false, and changes nothing, when the system refuses. If the system takes its time,
    /// returns true and emits `changed` when it has decided.
    [[nodiscard]] virtual bool registerItem() = 0;
    /// Removes the registration. Returns true when there is none, false when the system refuses.
    [[nodiscard]] virtual bool unregisterItem() = 0;

Q_SIGNALS:
    /// The system has decided on an earlier change, maybe against it.
    void changed();
};

} // namespace kelvo
