#include "windows/SceneWindow.h"

#include "platform/NativeWindow.h"
#include "platform/WindowSystem.h"
#include "style/WholeFrame.h"
#include "style/WindowKey.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QScreen>

namespace kelvo {

namespace {

/// Lays out the item and its children now. Positioners would otherwise compute their sizes at the first frame, and the
/// window would open with a wrong size.
void layOut(QQuickItem &item)
{
    for (auto *child : item.childItems()) {
        layOut(*child);
    }
    item.ensurePolished();
}

} // namespace

SceneWindow::SceneWindow(ViewEngine &engine, const Appearance &appearance, QString title, QUrl source)
    : engine_(engine)
    , tokens_(&appearance)
    , title_(std::move(title))
    , source_(std::move(source))
{
    connect(&tokens_, &Tokens::changed, this, [this] {
        if (view_) {
            view_->setColor(tokens_.window());
        }
    });
}

// Delete the view now: deleteLater() might never take effect, because the event loop may not run again.
SceneWindow::~SceneWindow()
{
    delete view_.release();
}

void SceneWindow::open()
{
    if (view_) {
        NativeWindow::bringToThisWorkspace(*view_);
    } else if (!load()) {
        view_.reset();
        Q_EMIT failed();
        return;
    }
    view_->show();
    NativeWindow::activate(*view_);
}

void SceneWindow::close()
{
    if (!view_) {
        return;
    }
    const auto view = std::move(view_);
    view->removeEventFilter(this);
    view->hide();
    Q_EMIT closed();
}

bool SceneWindow::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto &key = *static_cast<QKeyEvent *>(event);
        if (isUnmarkedRepeat(key)) {
            QKeyEvent repeat(key.type(), key.key(), key.modifiers(), key.text(), true,
                             static_cast<quint16>(key.count()));
            QCoreApplication::sendEvent(watched, &repeat);
            return true;
        }
        if (handleKey(key)) {
            return true;
        }
        break;
    }
    case QEvent::KeyRelease: {
        const auto &key = *static_cast<QKeyEvent *>(event);
        releasedKey_ = key.key();
        releasedAt_ = key.timestamp();
        break;
    }
    case QEvent::Close: close(); break;
    default: break;
    }
    return QObject::eventFilter(watched, event);
}

/// Whether a key repeats because it is held down, although Qt does not say so. On X11, Qt recognizes a repetition only if
/// the next press has arrived when it processes the release; both have the same time.
bool SceneWindow::isUnmarkedRepeat(const QKeyEvent &event) const
{
    return !event.isAutoRepeat() && event.timestamp() != 0 && event.timestamp() == releasedAt_
        && event.key() == releasedKey_;
}

bool SceneWindow::handleKey(const QKeyEvent &event)
{
    switch (windowKey(event)) {
    case WindowKey::close: close(); return true;
    case WindowKey::settings: Q_EMIT settingsRequested(); return true;
    case WindowKey::quit: QCoreApplication::quit(); return true;
    case WindowKey::none: return false;
    }
    Q_UNREACHABLE();
}

bool SceneWindow::load()
{
    view_.reset(new QQuickView(&engine_.get(), nullptr));
    view_->setTitle(title_);
    view_->setFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint
                    | Qt::WindowMinimizeButtonHint);
    view_->setColor(tokens_.window());
    view_->setResizeMode(QQuickView::SizeRootObjectToView);
    const auto pointer = WindowSystem::pointer();
    if (auto *screen = pointer ? QGuiApplication::screenAt(*pointer) : nullptr) {
        view_->setScreen(screen);
    }
    if (!engine_.load(*view_, source_, makeState(*view_))) {
        return false;
    }
    layOut(*view_->rootObject());
    setSizes(*view_);
    view_->installEventFilter(this);
    new WholeFrame(*view_);
    return true;
}

} // namespace kelvo
