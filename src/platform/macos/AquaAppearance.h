#pragma once

#include "platform/Appearance.h"

#include <memory>

namespace kelvo {

/// The application's effective appearance, and apart from it the menu bar's, which follows the desktop picture.
class AquaAppearance : public Appearance
{
    Q_OBJECT

public:
    AquaAppearance();
    ~AquaAppearance() override;

    bool isDark() const override;
    /// The windows' answer until `followMenuBar` found the application's own item there.
    bool panelIsDark() const override;
    bool reduceMotion() const override;

    /// Looks for the application's item in the menu bar. Call it whenever that was shown.
    void followMenuBar();

private:
    class Observers;
    std::unique_ptr<Observers> observers_;
};

} // namespace kelvo
