#include "platform/WindowSystem.h"

#include <QCursor>
#include <QScreen>

namespace kelvo::WindowSystem {

Choice::Choice()
{
    // Qt activates a program when it has started, which would take the focus from the user's window at login.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
}

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

// The Dock is often thicker than the menu bar, but never contains the ring.
QRect geometryWithoutBars(const QScreen &screen)
{
    auto rectangle = screen.geometry();
    rectangle.setTop(screen.availableGeometry().top());
    return rectangle;
}

} // namespace kelvo::WindowSystem
