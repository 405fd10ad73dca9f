#pragma once

#include <QPoint>
#include <QString>

namespace kelvo {

/// Simulates the mouse and the keyboard in the X server; programs see real input events. Points are in screen coordinates.
/// Each function returns when the X server has processed the input; programs may process it later.
namespace Hand {

void moveTo(const QPoint &point);
/// Two clicks are far enough apart not to be a double click.
void click(const QPoint &point);
/// Waits until a click is not the second one of a double click, for programs that have processed the first one by now but
/// perhaps long after it was made: they do not learn from a tray when it was made.
void waitOutDoubleClick();
/// Presses the mouse button at `from`, moves to `to` in steps, and releases it there.
void drag(const QPoint &from, const QPoint &to);
/// Presses a key, with modifiers as in "ctrl+comma".
void press(const QString &key);
void type(const QString &text);

} // namespace Hand

} // namespace kelvo
