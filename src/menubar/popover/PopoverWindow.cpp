#include "menubar/popover/PopoverWindow.h"

#include "menubar/popover/PopoverPlacement.h"
#include "platform/Compositing.h"
#include "style/WholeFrame.h"
#include "style/WindowKey.h"

#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QQuickItem>
#include <QScreen>

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

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
}

PopoverWindow::~PopoverWindow() = default;

void PopoverWindow::toggle(const QRect &ring)
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
    openBeside(ring.isEmpty() ? QRect(QCursor::pos(), QSize(1, 1)) : ring);
}

void PopoverWindow::open()
{
    if (isOpen()) {
        view_->requestActivate();
        return;
    }
    const auto *screen = QGuiApplication::primaryScreen();
    openBeside(PopoverPlacement::panelCorner(screen->geometry(), screen->availableGeometry()));
}

void PopoverWindow::close()
{
    if (!isOpen()) {
        return;
    }
    view_->hide();
    state_.close();
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

void PopoverWindow::load()
{
    view_ = std::make_unique<QQuickView>(&engine_.get(), nullptr);
    view_->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint);
    view_->setTitle(u"Kelvo"_s);
    view_->setColor(Qt::transparent);
    view_->setResizeMode(QQuickView::SizeViewToRootObject);
    view_->setInitialProperties({{u"popover"_s, QVariant::fromValue(&state_)}});
    view_->setSource(QUrl(u"qrc:/qt/qml/Kelvo/menubar/popover/PopoverFrame.qml"_s));
    view_->installEventFilter(this);
    new WholeFrame(*view_);

    frame_ = qobject_cast<PopoverFrameItem *>(view_->rootObject());
    connect(frame_, &QQuickItem::heightChanged, this, &PopoverWindow::fit);
    connect(frame_->card(), &QQuickItem::widthChanged, this, &PopoverWindow::place);
    connect(frame_->card(), &QQuickItem::heightChanged, this, &PopoverWindow::place);
    connect(view_.get(), &QWindow::activeChanged, this, &PopoverWindow::closeForLostFocus);
}

void PopoverWindow::openBeside(const QRect &anchor)
{
    if (!view_) {
        load();
    }
    frame_->setTranslucent(isCompositing());
    anchor_ = anchor;
    state_.open();
    place();
    view_->show();
    view_->requestActivate();
}

/// Places the popover without its shadow; the shadow uses the remaining space.
void PopoverWindow::place()
{
    const auto *screen = screenOf(anchor_);
    const auto available = screen->availableGeometry();
    const auto position = PopoverPlacement::beside(anchor_, card().size(), screen->geometry(), available);
    giveRoom(QRect(position, card().size()), available);
    fit();
    view_->setPosition(position - card().topLeft());
}

/// Resizes the view to its content now. By itself the view does so only after the next event, and would be shown at the
/// wrong position until then.
void PopoverWindow::fit()
{
    view_->resize(frame_->size().toSize());
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

void PopoverWindow::closeForLostFocus()
{
    if (view_->isActive() || !isOpen()) {
        return;
    }
    close();
    justClosed_ = clock_.after(clickTime, [this] { justClosed_.reset(); });
}

QRect PopoverWindow::card() const
{
    const auto *card = frame_->card();
    return QRectF(card->position(), card->size()).toAlignedRect();
}

} // namespace kelvo
