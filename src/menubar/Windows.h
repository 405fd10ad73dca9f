#pragma once

#include <QObject>
#include <QRect>

#include <memory>

namespace kelvo {

class NotifierStore;
class SettingsStore;
class StatusStore;
struct Platform;

/// What of the user interface opens and closes: the popover, the settings and the first-run window. It knows Qt Quick,
/// which weighs more than all the rest, so whoever watches makes it only when one of them is wanted.
class Windows
{
public:
    Windows() = default;
    virtual ~Windows() = default;
    Windows(const Windows &) = delete;
    Windows &operator=(const Windows &) = delete;

    /// The ring was clicked. `ring` is where it is on the screen; empty when nobody knows.
    virtual void togglePopover(const QRect &ring) = 0;
    virtual void openPopover() = 0;
    virtual void openSettings() = 0;
    virtual void openOnboarding() = 0;
};

/// Makes the windows, of stores and a platform that outlive them; gives nothing when that fails.
using WindowsFactory = std::unique_ptr<Windows> (*)(StatusStore &, SettingsStore &, NotifierStore &, Platform &);

/// A WindowsFactory as a loadable library offers it.
class WindowsPlugin
{
public:
    virtual ~WindowsPlugin() = default;

    virtual std::unique_ptr<Windows> make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                          Platform &platform) = 0;
};

} // namespace kelvo

Q_DECLARE_INTERFACE(kelvo::WindowsPlugin, "app.kelvo.WindowsPlugin")
