#pragma once

#include <QByteArray>
#include <QPoint>
#include <QRect>

#include <optional>

class QScreen;

namespace kelvo::WindowSystem {

/// Chooses the platform plugin for the QApplication that is made while this object exists. QT_QPA_PLATFORM in the
/// environment takes precedence.
class Choice
{
public:
    Choice();
    ~Choice();
    Choice(const Choice &) = delete;
    Choice &operator=(const Choice &) = delete;

private:
    [[maybe_unused]] bool isMade_ = false;
};

/// The kinds of windows in which the popover can be shown.
enum class PopoverKind {
    managed,   ///< the window manager places the window where the program asks
    unmanaged, ///< the window manager would place it somewhere else, but does not touch windows that bypass it
    layer,     ///< the compositor places it in a corner of the screen, beside the panels
    ordinary,  ///< the compositor places it where it likes: a normal window with a title bar
};
/// Requires a QGuiApplication, like all functions below.
PopoverKind popoverKind();

/// The position of the pointer. Null when this program knows it only while the pointer is over one of its windows.
std::optional<QPoint> pointer();

/// The part of the screen without panels. When the desktop does not tell, an estimate that leaves room for one panel.
QRect availableGeometry(const QScreen &screen);

/// The part of the screen without the panels that can contain the ring. It may be larger than the available geometry.
QRect geometryWithoutBars(const QScreen &screen);

} // namespace kelvo::WindowSystem
