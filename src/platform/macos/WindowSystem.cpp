#include "platform/WindowSystem.h"
#include "platform/NativeWindow.h"
#include "platform/PressWatch.h"

#include <QCursor>
#include <QScreen>
#include <QWindow>

namespace kelvo {

namespace WindowSystem {

Choice::Choice() = default;

Choice::~Choice() = default;

PopoverKind popoverKind()
{
    return PopoverKind::managed;
}

std::optional<QPoint> pointer()
{
    return QCursor::pos();
}

QRect availableGeometry(const QScreen &screen)
{
    return screen.availableGeometry();
}

} // namespace WindowSystem

namespace NativeWindow {

void keepOutOfTaskBar(QWindow &) { }

// The window is created without a shadow.
void setDrawnShadow(QWindow &, const QMargins &) { }

void bringToThisWorkspace(QWindow &) { }

void activate(QWindow &window)
{
    window.raise();
    window.requestActivate();
}

} // namespace NativeWindow

// A press elsewhere takes the focus from the window.
class PressWatch::Native
{
};

PressWatch::PressWatch(QObject *parent)
    : QObject(parent)
{
}

PressWatch::~PressWatch() = default;

void PressWatch::start() { }

void PressWatch::stop() { }

} // namespace kelvo
