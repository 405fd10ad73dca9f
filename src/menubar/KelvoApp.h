#pragma once

#include "menubar/Views.h"
#include "monitor/StatusStore.h"
#include "platform/Platform.h"
#include "settings/SettingsStore.h"

#include <QMenu>
#include <QObject>

#include <memory>
#include <optional>

namespace kelvo {

/// The root of the user interface. Three scenes: the ring in the tray or menu bar with its popover, the settings window,
/// and the first-run window, which opens by itself until the user has been through it once.
class KelvoApp : public QObject
{
    Q_OBJECT

public:
    /// Shows the ring as soon as there is a place for it. The windows are made when the first of them is wanted, and
    /// again if that failed. Everything must outlive this.
    KelvoApp(StatusStore &store, SettingsStore &settings, NotifierStore &notifier, Platform &platform,
             ViewsFactory makeViews);
    ~KelvoApp() override;

    /// Shows the ring before anything is known. To be called before the stores are made: their first requests load the
    /// libraries for TLS, which takes longer than all the rest of the start.
    static void showFirstRing(StatusItem &statusItem, const Appearance &appearance);

    void openPopover();
    void openSettings();
    void openOnboarding();

private:
    /// Nothing when there are none to be had: then the ring and its menu are all there is, and the watching goes on.
    Views *views();
    void togglePopover();
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
    SettingsStore &settings_;
    NotifierStore &notifier_;
    Platform &platform_;
    Appearance &appearance_;
    StatusItem &statusItem_;
    ViewsFactory makeViews_;
    std::unique_ptr<Views> views_;
    QMenu menu_;
    std::optional<Shown> shown_;
    QString toolTip_;
};

} // namespace kelvo
