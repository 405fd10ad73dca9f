#include "windows/QuickViews.h"

#include "platform/Platform.h"

namespace kelvo {

QuickViews::QuickViews(StatusStore &store, SettingsStore &settings, NotifierStore &notifier, Platform &platform)
    : engine_(*platform.appearance)
    , popover_(store, settings, engine_, *platform.clock)
    , settingsWindow_(settings, notifier, engine_, *platform.appearance)
    , onboardingWindow_(settings, notifier, engine_, *platform.appearance)
    , opener_(*platform.clock)
{
    connect(&popover_, &PopoverWindow::settingsRequested, this, &QuickViews::openSettings);
    for (SceneWindow *window : std::initializer_list<SceneWindow *>{&settingsWindow_, &onboardingWindow_}) {
        connect(window, &SceneWindow::settingsRequested, this, &QuickViews::openSettings);
    }
    connect(&settingsWindow_, &SettingsSceneWindow::onboardingRequested, this, &QuickViews::openOnboarding);
}

QuickViews::~QuickViews() = default;

std::unique_ptr<Views> QuickViews::make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                        Platform &platform)
{
    return std::make_unique<QuickViews>(store, settings, notifier, platform);
}

void QuickViews::togglePopover(const RingPlace &ring)
{
    popover_.toggle(ring);
}

void QuickViews::openPopover(const RingPlace &ring)
{
    popover_.open(ring);
}

void QuickViews::openSettings()
{
    settingsWindow_.open();
    opener_.bringSettingsForward();
}

void QuickViews::openOnboarding()
{
    onboardingWindow_.open();
    opener_.bringForward(WindowOpener::onboardingTitle());
}

} // namespace kelvo
