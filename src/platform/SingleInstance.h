#pragma once

#include <QObject>

namespace kelvo {

/// Keeps the application to one running instance in a login session.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Becomes the instance, or hands over to the one that is running already, which emits `activationRequested`.
    /// False when it handed over: this process should end. True also where the session has no means to find out.
    [[nodiscard]] virtual bool acquire() = 0;

Q_SIGNALS:
    /// Another start of the application handed over to this one.
    void activationRequested();
};

} // namespace kelvo
