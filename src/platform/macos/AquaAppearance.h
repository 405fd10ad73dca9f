#pragma once

#include "platform/Appearance.h"

#include <memory>

namespace kelvo {

/// The effective appearance of the application, and that of the menu bar, which depends on the desktop picture.
class AquaAppearance : public Appearance
{
    Q_OBJECT

public:
    AquaAppearance();
    ~AquaAppearance() override;

    bool isDark() const override;
    /// Equals `isDark` until `followMenuBar` has found the application's item in the menu bar.
    bool panelIsDark() const override;
    bool highContrast() const override;
    bool reduceMotion() const override;

    /// Starts to follow the appearance of the application's item in the menu bar. Call it after the item was shown.
    void followMenuBar();

private:
    class Observers;
    std::unique_ptr<Observers> observers_;
};

} // namespace kelvo
