#pragma once

#include "platform/Appearance.h"

#include <memory>

Q_FORWARD_DECLARE_OBJC_CLASS(NSView);

namespace kelvo {

/// The effective appearance of the application, and that of the menu bar, which depends on the desktop picture.
class AquaAppearance : public Appearance
{
    Q_OBJECT

public:
    AquaAppearance();
    ~AquaAppearance() override;

    bool isDark() const override;
    /// Equals `isDark` until `followMenuBar` is called. With several displays, the bars may differ; this is the bar of the
    /// view.
    bool panelIsDark() const override;
    bool highContrast() const override;
    bool reduceMotion() const override;

    /// Follows the appearance of a view in the menu bar.
    void followMenuBar(NSView *view);

private:
    class Observers;
    std::unique_ptr<Observers> observers_;
};

} // namespace kelvo
