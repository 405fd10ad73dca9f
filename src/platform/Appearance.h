#pragma once

#include <QObject>

namespace kelvo {

/// The desktop's colour scheme, contrast and motion settings.
class Appearance : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Whether windows are dark. False when the desktop does not say.
    virtual bool isDark() const = 0;
    /// Whether the panel or menu bar that holds the ring is dark. It can differ from the windows.
    virtual bool panelIsDark() const = 0;
    /// Whether the user asked for a higher contrast.
    virtual bool highContrast() const = 0;
    /// Whether the user asked for reduced motion.
    virtual bool reduceMotion() const = 0;

Q_SIGNALS:
    /// At least one of the values above changed.
    void changed();
};

} // namespace kelvo
