#pragma once

#include "menubar/Views.h"
#include "monitor/StatusStore.h"
#include "platform/Platform.h"
#include "settings/SettingsStore.h"

#include <QMenu>
#include <QObject>
#include <QThread>

#include <memory>
#include <optional>

namespace kelvo {

/// The root of the user interface: the ring in the tray or menu bar with its popover, the settings window, and the
/// onboarding window. The onboarding window opens at each start until the user has completed it.
class KelvoApp : public QObject
{
    Q_OBJECT

public:
    /// Shows the ring as soon as there is a tray. `makeViews` is called when the first view is needed, and again at the
    /// next need if it failed. All arguments must outlive this object.
    KelvoApp(StatusStore &store, SettingsStore &settings, NotifierStore &notifier, Platform &platform,
             ViewsFactory makeViews);
    ~KelvoApp() override;

    /// Shows the inactive ring. Call this before the stores are made: their first requests load the TLS libraries, which
    /// takes longer than the rest of the start.
    static void showFirstRing(StatusItem &statusItem, const Appearance &appearance);

    void openPopover();
    void openSettings();
    void openOnboarding();

private:
    /// The views, made at the first call. Null when they cannot be made; the ring, its menu and the monitor still work.
    Views *views();
    /// Notifies the user that views cannot be opened. Does so once, because what helps is to start the program again.
    void reportFailedViews();
    void readFonts();
    void togglePopover(std::optional<QPoint> point);
    void makeMenu();
    void updateStatusItem();
    void updateIcon();
    void updateToolTip();
    void showToolTip(const QString &toolTip);

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
    std::unique_ptr<QThread> fonts_;
    std::unique_ptr<Views> views_;
    bool failedViewsAreReported_ = false;
    QMenu menu_;
    std::optional<Shown> shown_;
    QString toolTip_;
};

} // namespace kelvo
