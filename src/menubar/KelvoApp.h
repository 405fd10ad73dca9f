#pragma once

#include "monitor/StatusStore.h"
#include "platform/Appearance.h"
#include "platform/StatusItem.h"
#include "settings/SettingsStore.h"

#include <QMenu>
#include <QObject>

#include <optional>

namespace kelvo {

/// The root of the user interface: the ring in the tray or menu bar, with its tooltip and menu.
class KelvoApp : public QObject
{
    Q_OBJECT

public:
    /// Shows the ring as soon as there is a place for it.
    KelvoApp(StatusStore &store, SettingsStore &settings, Appearance &appearance, StatusItem &statusItem);
    ~KelvoApp() override;

    /// Shows the ring before anything is known. To be called before the stores are made: their first requests load the
    /// libraries for TLS, which takes longer than all the rest of the start.
    static void showFirstRing(StatusItem &statusItem, const Appearance &appearance);

private:
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
    QMenu menu_;
    std::optional<Shown> shown_;
    QString toolTip_;
};

} // namespace kelvo
