#pragma once

class QMargins;
class QWindow;

/// What Qt does not do with windows. The functions have no effect where the desktop has no such thing.
namespace kelvo::NativeWindow {

/// Keeps the window out of the task bar and the pager. Call it before each time the window is shown.
void keepOutOfTaskBar(QWindow &window);

/// Tells the desktop how much of the window, in points, is a shadow that the program draws itself, so that the desktop
/// does not add its own.
void setDrawnShadow(QWindow &window, const QMargins &shadow);

/// Moves an open window to the workspace that the user sees. It may be hidden afterwards; show it again.
void bringToThisWorkspace(QWindow &window);

/// Raises the window and gives it the focus, with the activation token in the environment if there is one. The token is
/// used up.
void activate(QWindow &window);

} // namespace kelvo::NativeWindow
