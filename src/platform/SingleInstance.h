#pragma once

#include <QObject>

namespace kelvo {

/// Allows one running instance of the application per login session.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    enum class Outcome {
        acquired,   ///< this process is the instance, or the session has no way to find other instances
        handedOver, ///< another instance is running and emits `activationRequested`; this process should exit
        noAnswer,   ///< another instance is running but does not answer; this process should exit
    };

    /// Makes this process the instance, or hands over to the one that is running. Waits a few seconds for its answer.
    [[nodiscard]] virtual Outcome acquire() = 0;

Q_SIGNALS:
    /// The application was started again, and the new process handed over to this one.
    void activationRequested();
};

} // namespace kelvo
