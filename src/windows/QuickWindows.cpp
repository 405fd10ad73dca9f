#include "windows/QuickWindows.h"

#include "platform/Platform.h"

namespace kelvo {

QuickWindows::QuickWindows(StatusStore &store, SettingsStore &settings, NotifierStore &notifier, Platform &platform)
    : engine_(*platform.appearance)
    , popover_(store, settings, engine_, *platform.clock)
    , settingsWindow_(settings, notifier, engine_, *platform.appearance)
    , onboardingWindow_(settings, notifier, engine_, *platform.appearance)
    , opener_(*platform.clock)
{
    connect(&popover_, &PopoverWindow::settingsRequested, this, &QuickWindows::openSettings);
    for (SceneWindow *window : std::initializer_list<SceneWindow *>{&settingsWindow_, &onboardingWindow_}) {
        connect(window, &SceneWindow::settingsRequested, this, &QuickWindows::openSettings);
    }
    connect(&settingsWindow_, &SettingsWindow::onboardingRequested, this, &QuickWindows::openOnboarding);
}

QuickWindows::~QuickWindows() = default;

std::unique_ptr<Windows> QuickWindows::make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                            Platform &platform)
{
    return std::make_unique<QuickWindows>(store, settings, notifier, platform);
}

void QuickWindows::togglePopover(const QRect &ring)
{
    popover_.toggle(ring);
}

void QuickWindows::openPopover()
{
    popover_.open();
}

void QuickWindows::openSettings()
{
    settingsWindow_.open();
    opener_.bringSettingsForward();
}

void QuickWindows::openOnboarding()
{
    onboardingWindow_.open();
    opener_.bringForward(WindowOpener::onboardingTitle());
}

} // namespace kelvo
