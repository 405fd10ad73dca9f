#pragma once

#include <QObject>

namespace kelvo {

/// How the desktop looks: light or dark, moving or still.
class Appearance : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Whether windows are dark. False where the desktop does not say.
    virtual bool isDark() const = 0;
    /// Whether the bar that holds the ring is dark, which need not agree with the windows.
    virtual bool panelIsDark() const = 0;
    /// Whether the user asked for less motion.
    virtual bool reduceMotion() const = 0;

Q_SIGNALS:
    /// One of the answers above changed.
    void changed();
};

} // namespace kelvo
