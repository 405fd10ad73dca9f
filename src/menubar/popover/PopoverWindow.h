#pragma once

#include "menubar/Views.h"
#include "menubar/popover/PopoverFrameItem.h"
#include "menubar/popover/PopoverState.h"
#include "platform/ContinuousClock.h"
#include "platform/LockWatch.h"
#include "platform/PressWatch.h"
#include "platform/WindowSystem.h"
#include "style/ViewEngine.h"

#include <QObject>
#include <QQuickView>
#include <QRect>

#include <memory>

class QKeyEvent;

namespace kelvo {

/// The window of the popover. Its views are loaded when it first opens and are kept until they are unloaded.
class PopoverWindow : public QObject
{
    Q_OBJECT

public:
    /// All arguments must outlive this object.
    PopoverWindow(StatusStore &store, SettingsStore &settings, ViewEngine &engine, ContinuousClock &clock);
    ~PopoverWindow() override;

    bool isOpen() const { return state_.isOpen(); }

    /// Opens or closes the popover after a click on the ring. It opens at the ring, or at the end of the panel if the place
    /// of the ring is not known.
    void toggle(const RingPlace &ring = {});
    /// Opens the popover at the same place. If it is open without the focus, opens it again.
    void open(const RingPlace &ring = {});
    void close();
    /// Destroys the window and its views, if it is closed. The next opening loads them again.
    void unload();

    /// The window; null while it is not loaded.
    QQuickView *view() const { return view_.get(); }
    /// The rectangle of the popover, without its shadow, in the window.
    QRect card() const;

Q_SIGNALS:
    void closed();
    /// The popover could not be loaded, and was not opened.
    void failed();
    /// The user asked for the settings.
    void settingsRequested();

private:
    /// The maximum time between the loss of focus and the click on the ring that caused it.
    static constexpr std::chrono::milliseconds clickTime{400};
    /// The same for a press that was seen at the ring. A busy tray reports the click long after it.
    static constexpr std::chrono::milliseconds lateClickTime{2000};

    bool eventFilter(QObject *watched, QEvent *event) override;
    bool handleKey(const QKeyEvent &event);
    /// Makes the window. Returns false if its view cannot be loaded; the popover then stays closed.
    bool load();
    void openBeside(const QRect &anchor);
    void place();
    void fit();
    /// How far the window extends beyond the popover on each side.
    QMargins shadow() const;
    void giveRoom(const QRect &card, const QRect &available);
    void closeForPress();
    void closeForLostFocus();
    void closeForClickElsewhere(std::chrono::milliseconds maximumDelay = clickTime);

    PopoverState state_;
    ViewEngine &engine_;
    ContinuousClock &clock_;
    WindowSystem::PopoverKind kind_ = WindowSystem::PopoverKind::managed;
    QRect anchor_;
    std::unique_ptr<QQuickView> view_;
    PopoverFrameItem *frame_ = nullptr; ///< the root item of the window
    PressWatch presses_;
    LockWatch lock_;
    std::unique_ptr<ContinuousClock::Timer> settled_; ///< runs while the click that opened the popover may be doubled
    std::unique_ptr<ContinuousClock::Timer>
        justClosed_; ///< runs while the click that closed the popover may still arrive
};

} // namespace kelvo
