#pragma once

#include <QObject>

namespace kelvo {

/// Allows one running instance of the application per login session.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Makes this process the instance and returns true. If another instance is running, makes that one emit
    /// `activationRequested` and returns false; this process should then exit. Returns true as well when the session
    /// has no way to find other instances.
    [[nodiscard]] virtual bool acquire() = 0;

Q_SIGNALS:
    /// The application was started again, and the new process handed over to this one.
    void activationRequested();
};

} // namespace kelvo
