#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>

#include <memory>
#include <optional>

namespace kelvo {

class NotifierStore;
class SettingsStore;
class StatusStore;
struct Platform;

/// What is known of the place of the ring on the screen.
struct RingPlace
{
    /// Empty when the bar does not report it.
    QRect rectangle;
    /// Where the bar says that the ring was clicked, which is not always true.
    std::optional<QPoint> clicked;
};

/// The popover, the settings window and the onboarding window. Their implementation needs Qt Quick, which takes more
/// memory than the rest of the program, so it is in a library that is loaded when the first of them opens.
class Views : public QObject
{
    Q_OBJECT

public:
    /// Opens or closes the popover after a click on the ring.
    virtual void togglePopover(const RingPlace &ring) = 0;
    virtual void openPopover(const RingPlace &ring) = 0;
    virtual void openSettings() = 0;
    virtual void openOnboarding() = 0;

Q_SIGNALS:
    /// A view could not be loaded, and was not opened.
    void failed();
};

/// Makes the views. Returns null on failure. The arguments must outlive the views.
using ViewsFactory = std::unique_ptr<Views> (*)(StatusStore &, SettingsStore &, NotifierStore &, Platform &);

/// The interface of the library that contains the views; `make` is its ViewsFactory.
class ViewsPlugin
{
public:
    virtual ~ViewsPlugin() = default;

    virtual std::unique_ptr<Views> make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                        Platform &platform) = 0;
};

} // namespace kelvo

Q_DECLARE_INTERFACE(kelvo::ViewsPlugin, "app.kelvo.ViewsPlugin")
