#pragma once

#include "menubar/PopoverWindow.h"
#include "menubar/WindowOpener.h"
#include "menubar/Windows.h"
#include "style/ViewEngine.h"
#include "windows/OnboardingSceneWindow.h"
#include "windows/SettingsWindow.h"

#include <QObject>

namespace kelvo {

/// The windows, in Qt Quick. Each is loaded when it first opens.
class QuickWindows : public QObject, public Windows
{
    Q_OBJECT

public:
    /// Everything must outlive this.
    QuickWindows(StatusStore &store, SettingsStore &settings, NotifierStore &notifier, Platform &platform);
    ~QuickWindows() override;
    /// A WindowsFactory.
    static std::unique_ptr<Windows> make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                         Platform &platform);

    void togglePopover(const QRect &ring) override;
    void openPopover() override;
    void openSettings() override;
    void openOnboarding() override;

private:
    ViewEngine engine_;
    PopoverWindow popover_;
    SettingsWindow settingsWindow_;
    OnboardingSceneWindow onboardingWindow_;
    WindowOpener opener_;
};

} // namespace kelvo
