#pragma once

class QMargins;
class QWindow;

/// What Qt does not do with windows. The functions have no effect where the desktop has no such thing.
namespace kelvo::NativeWindow {

/// Makes the window a popover of the bar: it is not in the task bar and the pager, opens on the workspace that the user sees,
/// and takes the keyboard without bringing the program's other windows to the front. Call it before each time the window is
/// shown.
void makePopover(QWindow &window);

/// Tells the desktop how much of the window, in points, is a shadow that the program draws itself, so that the desktop
/// does not add its own.
void setDrawnShadow(QWindow &window, const QMargins &shadow);

/// Moves an open window to the workspace that the user sees. It may be hidden afterwards; show it again.
void bringToThisWorkspace(QWindow &window);

/// Raises the window and gives it the focus, with the activation token in the environment if there is one. The token is
/// used up.
void activate(QWindow &window);

} // namespace kelvo::NativeWindow
