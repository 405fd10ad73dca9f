#include "menubar/popover/PopoverWindow.h"

#include "menubar/popover/PopoverPlacement.h"
#include "platform/Compositing.h"
#include "platform/LayerShell.h"
#include "platform/NativeWindow.h"
#include "style/Tokens.h"
#include "style/WholeFrame.h"
#include "style/WindowKey.h"

#include <QCoreApplication>
#include <QCursor>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QQmlComponent>
#include <QQuickItem>
#include <QScreen>

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

using WindowSystem::PopoverKind;

/// The end of the panel on the primary screen.
QRect panelCorner()
{
    const auto *screen = QGuiApplication::primaryScreen();
    return PopoverPlacement::panelCorner(screen->geometry(), WindowSystem::geometryWithoutBars(*screen));
}

QList<QRect> screens()
{
    QList<QRect> rectangles;
    for (const auto *screen : QGuiApplication::screens()) {
        rectangles.append(screen->geometry());
    }
    return rectangles;
}

Qt::WindowFlags flagsOf(PopoverKind kind)
{
    constexpr auto onTop = Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint;
    switch (kind) {
    case PopoverKind::managed: return Qt::Tool | onTop;
    // A compositor does not give the focus to a tool window that bypasses its window manager.
    case PopoverKind::unmanaged: return Qt::Window | Qt::BypassWindowManagerHint | onTop;
    case PopoverKind::layer: return Qt::Window | onTop;
    case PopoverKind::ordinary: return Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint;
    }
    Q_UNREACHABLE();
}

/// Loads the fonts of the popover.
void loadFonts()
{
    const Tokens tokens;
    for (const auto &font : {tokens.heroTitle(), tokens.statusLabel(), tokens.bodyText(), tokens.checkedTime(),
                             tokens.trackedSectionCaps(), tokens.rowStrong()}) {
        [[maybe_unused]] const auto height = QFontMetricsF(font).height();
    }
}

QScreen *screenOf(const QRect &anchor)
{
    auto *screen = QGuiApplication::screenAt(anchor.center());
    return screen ? screen : QGuiApplication::primaryScreen();
}

} // namespace

PopoverWindow::PopoverWindow(StatusStore &store, SettingsStore &settings, ViewEngine &engine, ContinuousClock &clock)
    : state_(store, settings)
    , engine_(engine)
    , clock_(clock)
{
    connect(&state_, &PopoverState::settingsRequested, this, [this] {
        close();
        Q_EMIT settingsRequested();
    });
    connect(&presses_, &PressWatch::pressed, this, &PopoverWindow::closeForPress);
    // A lock screen may take the keyboard without taking the focus, and cover the popover, which would go on to move.
    connect(&lock_, &LockWatch::locked, this, &PopoverWindow::close);
}

PopoverWindow::~PopoverWindow() = default;

void PopoverWindow::toggle(const RingPlace &ring)
{
    if (isOpen()) {
        close();
        return;
    }
    // This click has taken the focus and thereby closed the popover; it must not open it again.
    if (justClosed_) {
        justClosed_.reset();
        return;
    }
    openBeside(PopoverPlacement::anchor(ring, WindowSystem::pointer(), screens()).value_or(panelCorner()));
}

void PopoverWindow::open(const RingPlace &ring)
{
    if (isOpen() && view_->isActive()) {
        return;
    }
    // It may be open behind other windows or on another workspace. A new window appears in front of the user.
    close();
    openBeside(PopoverPlacement::anchor(ring, std::nullopt, screens()).value_or(panelCorner()));
}

void PopoverWindow::close()
{
    if (!isOpen()) {
        return;
    }
    settled_.reset();
    presses_.stop();
    lock_.stop();
    if (kind_ == PopoverKind::unmanaged) {
        view_->setKeyboardGrabEnabled(false);
    }
    view_->hide();
    state_.close();
    Q_EMIT closed();
}

void PopoverWindow::unload()
{
    if (!isOpen()) {
        frame_ = nullptr;
        view_.reset();
    }
}

bool PopoverWindow::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (handleKey(*static_cast<QKeyEvent *>(event))) {
            return true;
        }
        break;
    case QEvent::MouseButtonPress:
        // A click on the shadow is a click outside of the popover.
        if (!card().contains(static_cast<QMouseEvent *>(event)->position().toPoint())) {
            close();
            return true;
        }
        break;
    case QEvent::Close: close(); break;
    default: break;
    }
    return QObject::eventFilter(watched, event);
}

bool PopoverWindow::handleKey(const QKeyEvent &event)
{
    if (event.key() == Qt::Key_Escape) {
        close();
        return true;
    }
    switch (windowKey(event)) {
    case WindowKey::close: close(); return true;
    case WindowKey::settings:
        close();
        Q_EMIT settingsRequested();
        return true;
    case WindowKey::quit: QCoreApplication::quit(); return true;
    case WindowKey::none: return false;
    }
    Q_UNREACHABLE();
}

bool PopoverWindow::load()
{
    const QUrl source(u"qrc:/qt/qml/Kelvo/menubar/popover/PopoverFrame.qml"_s);
    // Qt loads the types in a thread of its own, and this thread loads the fonts meanwhile.
    const QQmlComponent types(&engine_.get(), source, QQmlComponent::Asynchronous);
    loadFonts();

    view_ = std::make_unique<QQuickView>(&engine_.get(), nullptr);
    kind_ = WindowSystem::popoverKind();
    view_->setFlags(flagsOf(kind_));
    view_->setTitle(u"Kelvo"_s);
    view_->setColor(Qt::transparent);
    view_->setResizeMode(QQuickView::SizeViewToRootObject);
    if (!engine_.load(*view_, source, {{u"popover"_s, QVariant::fromValue(&state_)}})) {
        return false;
    }
    frame_ = qobject_cast<PopoverFrameItem *>(view_->rootObject());
    view_->installEventFilter(this);
    new WholeFrame(*view_);

    connect(frame_, &QQuickItem::heightChanged, this, &PopoverWindow::fit);
    connect(frame_->card(), &QQuickItem::widthChanged, this, &PopoverWindow::place);
    connect(frame_->card(), &QQuickItem::heightChanged, this, &PopoverWindow::place);
    connect(view_.get(), &QWindow::activeChanged, this, &PopoverWindow::closeForLostFocus);
    return true;
}

void PopoverWindow::openBeside(const QRect &anchor)
{
    if (!view_ && !load()) {
        view_.reset();
        Q_EMIT failed();
        return;
    }
    frame_->setTranslucent(isCompositing() && kind_ != PopoverKind::ordinary);
    anchor_ = anchor;
    state_.open();
    place();
    NativeWindow::makePopover(*view_);
    view_->show();
    if (kind_ == PopoverKind::unmanaged) {
        // The compositor sends the keys to the X server, but does not let a program set the focus there.
        view_->setKeyboardGrabEnabled(true);
    } else {
        NativeWindow::activate(*view_);
    }
    // The second press of a double click on the ring is not a click elsewhere.
    settled_ = clock_.after(clickTime, [this] { presses_.start(); });
    lock_.start();
}

/// Places the popover without its shadow; the shadow uses the remaining space.
void PopoverWindow::place()
{
    const auto *screen = screenOf(anchor_);
    if (kind_ == PopoverKind::layer) {
        const auto corner = PopoverPlacement::nearestCorner(anchor_, screen->geometry());
        frame_->setRoom(PopoverPlacement::roomInCorner(corner));
        placeInCorner(*view_, corner);
        fit();
        return;
    }
    const auto available = WindowSystem::availableGeometry(*screen);
    const auto position = PopoverPlacement::beside(anchor_, card().size(), screen->geometry(), available);
    giveRoom(QRect(position, card().size()), available);
    fit();
    view_->setPosition(position - card().topLeft());
    NativeWindow::setDrawnShadow(*view_, shadow());
}

/// Resizes the view to its content now. By itself the view does so only after the next event, and would be shown at the
/// wrong position until then.
void PopoverWindow::fit()
{
    const auto size = frame_->size().toSize();
    if (kind_ == PopoverKind::ordinary) {
        // A tiling compositor gives a window of fixed size its size.
        view_->setMinimumSize(size);
        view_->setMaximumSize(size);
    }
    view_->resize(size);
}

void PopoverWindow::giveRoom(const QRect &card, const QRect &available)
{
    frame_->setRoom({
        std::max(0, card.left() - available.left()),
        std::max(0, card.top() - available.top()),
        std::max(0, available.right() - card.right()),
        std::max(0, available.bottom() - card.bottom()),
    });
}

void PopoverWindow::closeForPress()
{
    const auto pointer = QCursor::pos();
    if (view_->geometry().contains(pointer)) {
        return;
    }
    // Some trays tell only the point that was clicked, which may be anywhere in the ring.
    constexpr int reach = 16;
    const bool isAtRing = anchor_.marginsAdded({reach, reach, reach, reach}).contains(pointer);
    closeForClickElsewhere(isAtRing ? lateClickTime : clickTime);
}

void PopoverWindow::closeForLostFocus()
{
    if (!view_->isActive() && isOpen()) {
        closeForClickElsewhere();
    }
}

/// The click may be one on the ring, whose tray tells the program about it later.
void PopoverWindow::closeForClickElsewhere(std::chrono::milliseconds maximumDelay)
{
    close();
    justClosed_ = clock_.after(maximumDelay, [this] { justClosed_.reset(); });
}

QMargins PopoverWindow::shadow() const
{
    const auto card = this->card();
    return frame_->isTranslucent()
        ? QMargins(card.left(), card.top(), view_->width() - card.right() - 1, view_->height() - card.bottom() - 1)
        : QMargins();
}

QRect PopoverWindow::card() const
{
    const auto *card = frame_->card();
    return QRectF(card->position(), card->size()).toAlignedRect();
}

} // namespace kelvo
