#pragma once

#include "menubar/Views.h"
#include "menubar/WindowOpener.h"
#include "menubar/popover/PopoverWindow.h"
#include "style/ViewEngine.h"
#include "windows/onboarding/OnboardingSceneWindow.h"
#include "windows/settings/SettingsSceneWindow.h"

#include <QObject>

namespace kelvo {

/// The Qt Quick implementation of the views. Each view is loaded when it first opens.
class QuickViews : public QObject, public Views
{
    Q_OBJECT

public:
    /// All arguments must outlive this object.
    QuickViews(StatusStore &store, SettingsStore &settings, NotifierStore &notifier, Platform &platform);
    ~QuickViews() override;
    /// A ViewsFactory that never fails.
    static std::unique_ptr<Views> make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                       Platform &platform);

    void togglePopover(const RingPlace &ring) override;
    void openPopover(const RingPlace &ring) override;
    void openSettings() override;
    void openOnboarding() override;

private:
    ViewEngine engine_;
    PopoverWindow popover_;
    SettingsSceneWindow settingsWindow_;
    OnboardingSceneWindow onboardingWindow_;
    WindowOpener opener_;
};

} // namespace kelvo
