#pragma once

#include "menubar/popover/PopoverFrameItem.h"
#include "menubar/popover/PopoverState.h"
#include "platform/ContinuousClock.h"
#include "style/ViewEngine.h"

#include <QObject>
#include <QQuickView>
#include <QRect>

#include <memory>

class QKeyEvent;

namespace kelvo {

/// The popover on the screen. Its views are loaded at the first opening and kept from then on.
class PopoverWindow : public QObject
{
    Q_OBJECT

public:
    /// Everything must outlive this.
    PopoverWindow(StatusStore &store, SettingsStore &settings, ViewEngine &engine, ContinuousClock &clock);
    ~PopoverWindow() override;

    bool isOpen() const { return state_.isOpen(); }

    /// The ring was clicked: opens the popover beside it, or closes it. `ring` is where the ring is on the screen;
    /// when it is empty nobody knows, and the popover opens at the pointer.
    void toggle(const QRect &ring = {});
    /// Opens the popover, at the end of the panel, or brings the open one forward.
    void open();
    void close();

    /// The window; nothing before the first opening.
    QQuickView *view() const { return view_.get(); }
    /// The rectangle of the popover in its window.
    QRect card() const;

Q_SIGNALS:
    /// The user wants to see the settings.
    void settingsRequested();

private:
    /// A click takes the focus a moment before it is told.
    static constexpr std::chrono::milliseconds clickTime{400};

    bool eventFilter(QObject *watched, QEvent *event) override;
    bool handleKey(const QKeyEvent &event);
    void load();
    void openBeside(const QRect &anchor);
    void place();
    void fit();
    void giveRoom(const QRect &card, const QRect &available);
    void closeForLostFocus();

    PopoverState state_;
    ViewEngine &engine_;
    ContinuousClock &clock_;
    QRect anchor_;
    std::unique_ptr<QQuickView> view_;
    PopoverFrameItem *frame_ = nullptr;                  ///< what the window shows
    std::unique_ptr<ContinuousClock::Timer> justClosed_; ///< while the click that closed the popover may still come
};

} // namespace kelvo
