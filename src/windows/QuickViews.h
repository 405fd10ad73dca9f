#pragma once

#include "menubar/Views.h"
#include "menubar/WindowOpener.h"
#include "menubar/popover/PopoverWindow.h"
#include "platform/ContinuousClock.h"
#include "style/ViewEngine.h"
#include "windows/onboarding/OnboardingSceneWindow.h"
#include "windows/settings/SettingsSceneWindow.h"

#include <QObject>

#include <chrono>
#include <memory>

namespace kelvo {

/// The Qt Quick implementation of the views. Each view is loaded when it opens. The popover is kept for the next opening,
/// until no view has been open for `unusedTime`: then everything is unloaded, and its memory returned to the system.
class QuickViews : public Views
{
    Q_OBJECT

public:
    static constexpr std::chrono::minutes unusedTime{10};

    /// All arguments must outlive this object.
    QuickViews(StatusStore &store, SettingsStore &settings, NotifierStore &notifier, Platform &platform);
    ~QuickViews() override;
    /// A ViewsFactory. Prints a warning and returns null when a QML module is not installed, or no longer.
    static std::unique_ptr<Views> make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                       Platform &platform);

    void togglePopover(const RingPlace &ring) override;
    void openPopover(const RingPlace &ring) override;
    void openSettings() override;
    void openOnboarding() override;

private:
    bool isAnyOpen() const;
    void waitForUnused();
    void unload();

    ContinuousClock &clock_;
    ViewEngine engine_;
    PopoverWindow popover_;
    SettingsSceneWindow settingsWindow_;
    OnboardingSceneWindow onboardingWindow_;
    WindowOpener opener_;
    std::unique_ptr<ContinuousClock::Timer> unused_; ///< runs while no view is open and something is loaded
};

} // namespace kelvo
