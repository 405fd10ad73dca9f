#pragma once

#include <QObject>
#include <QRect>

#include <memory>

namespace kelvo {

class NotifierStore;
class SettingsStore;
class StatusStore;
struct Platform;

/// The views that open and close: the popover, the settings window and the first-run window. Their implementation needs
/// Qt Quick, which takes more memory than the rest of the program, so it is loaded when the first of them opens.
class Views
{
public:
    Views() = default;
    virtual ~Views() = default;
    Views(const Views &) = delete;
    Views &operator=(const Views &) = delete;

    /// The ring was clicked. `ring` is its rectangle on the screen; empty when it is not known.
    virtual void togglePopover(const QRect &ring) = 0;
    virtual void openPopover() = 0;
    virtual void openSettings() = 0;
    virtual void openOnboarding() = 0;
};

/// Makes the views; null when that fails. The arguments must outlive them.
using ViewsFactory = std::unique_ptr<Views> (*)(StatusStore &, SettingsStore &, NotifierStore &, Platform &);

/// A ViewsFactory that a loaded library provides.
class ViewsPlugin
{
public:
    virtual ~ViewsPlugin() = default;

    virtual std::unique_ptr<Views> make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                        Platform &platform) = 0;
};

} // namespace kelvo

Q_DECLARE_INTERFACE(kelvo::ViewsPlugin, "app.kelvo.ViewsPlugin")
