#pragma once

#include "platform/Appearance.h"

namespace kelvo {

/// An appearance that a test sets.
class FakeAppearance : public Appearance
{
public:
    bool isDark() const override { return dark; }
    bool panelIsDark() const override { return dark; }
    bool highContrast() const override { return contrast; }
    bool reduceMotion() const override { return still; }

    void setDark(bool value)
    {
        dark = value;
        Q_EMIT changed();
    }
    void setHighContrast(bool value)
    {
        contrast = value;
        Q_EMIT changed();
    }
    void setReduceMotion(bool value)
    {
        still = value;
        Q_EMIT changed();
    }

    bool dark = false;
    bool contrast = false;
    bool still = false;
};

} // namespace kelvo
