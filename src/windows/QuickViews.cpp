#include "windows/QuickViews.h"

#include "platform/Platform.h"
#include "platform/ProcessMemory.h"

#include <array>
#include <string_view>

namespace kelvo {

namespace {

// Libraries of Qt that the rest of the program does not use.
constexpr std::array librariesOfViews{std::string_view("libQt6OpenGL"), std::string_view("libQt6Qml"),
                                      std::string_view("libQt6Quick")};

} // namespace

QuickViews::QuickViews(StatusStore &store, SettingsStore &settings, NotifierStore &notifier, Platform &platform)
    : clock_(*platform.clock)
    , engine_(*platform.appearance)
    , popover_(store, settings, engine_, *platform.clock)
    , settingsWindow_(settings, notifier, engine_, *platform.appearance)
    , onboardingWindow_(settings, notifier, engine_, *platform.appearance)
    , opener_(*platform.clock)
{
    connect(&popover_, &PopoverWindow::settingsRequested, this, &QuickViews::openSettings);
    connect(&popover_, &PopoverWindow::closed, this, &QuickViews::waitForUnused);
    connect(&popover_, &PopoverWindow::failed, this, &QuickViews::failed);
    for (SceneWindow *window : std::initializer_list<SceneWindow *>{&settingsWindow_, &onboardingWindow_}) {
        connect(window, &SceneWindow::settingsRequested, this, &QuickViews::openSettings);
        connect(window, &SceneWindow::closed, this, &QuickViews::waitForUnused);
        connect(window, &SceneWindow::failed, this, &QuickViews::failed);
    }
    connect(&settingsWindow_, &SettingsSceneWindow::onboardingRequested, this, &QuickViews::openOnboarding);
    // What was loaded for the view is not used.
    connect(this, &QuickViews::failed, this, &QuickViews::waitForUnused);
}

QuickViews::~QuickViews() = default;

std::unique_ptr<Views> QuickViews::make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                        Platform &platform)
{
    auto views = std::make_unique<QuickViews>(store, settings, notifier, platform);
    return views->engine_.findsModules() ? std::move(views) : nullptr;
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

bool QuickViews::isAnyOpen() const
{
    return popover_.isOpen() || settingsWindow_.isOpen() || onboardingWindow_.isOpen();
}

void QuickViews::waitForUnused()
{
    unused_ = clock_.after(unusedTime, [this] { unload(); });
}

/// Unloads everything, unless a view was opened since the last one closed. Closing that one starts the wait again.
void QuickViews::unload()
{
    unused_.reset();
    if (!isAnyOpen()) {
        popover_.unload();
        engine_.unload();
        returnUnusedMemory(librariesOfViews);
    }
}

} // namespace kelvo
