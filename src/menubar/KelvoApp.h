#pragma once

#include "menubar/PopoverWindow.h"
#include "menubar/WindowOpener.h"
#include "monitor/StatusStore.h"
#include "platform/Platform.h"
#include "settings/SettingsStore.h"
#include "style/ViewEngine.h"
#include "windows/OnboardingSceneWindow.h"
#include "windows/SettingsWindow.h"

#include <QMenu>
#include <QObject>

#include <optional>

namespace kelvo {

/// The root of the user interface. Three scenes: the ring in the tray or menu bar with its popover, the settings window,
/// and the first-run window, which opens by itself until the user has been through it once.
class KelvoApp : public QObject
{
    Q_OBJECT

public:
    /// Shows the ring as soon as there is a place for it. Everything must outlive this.
    KelvoApp(StatusStore &store, SettingsStore &settings, NotifierStore &notifier, Platform &platform);
    ~KelvoApp() override;

    /// Shows the ring before anything is known. To be called before the stores are made: their first requests load the
    /// libraries for TLS, which takes longer than all the rest of the start.
    static void showFirstRing(StatusItem &statusItem, const Appearance &appearance);

    void openPopover();
    void openSettings();
    void openOnboarding();

private:
    void makeMenu();
    void updateStatusItem();
    void updateIcon();
    void updateToolTip();

    struct Shown
    {
        RingState state;
        bool onDarkBar;
        bool operator==(const Shown &) const = default;
    };

    StatusStore &store_;
    Appearance &appearance_;
    StatusItem &statusItem_;
    ViewEngine engine_;
    PopoverWindow popover_;
    SettingsWindow settingsWindow_;
    OnboardingSceneWindow onboardingWindow_;
    WindowOpener opener_;
    QMenu menu_;
    std::optional<Shown> shown_;
    QString toolTip_;
};

} // namespace kelvo
