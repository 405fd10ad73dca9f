#pragma once

#include <QPoint>
#include <QString>

namespace kelvo {

/// The person's hand on the mouse and the keyboard: the X server takes what it does for the real thing. Points are those
/// of the screen. Every function returns when the server has taken it all, which is before any program has.
namespace Hand {

void moveTo(const QPoint &point);
void click(const QPoint &point);
/// Presses the button at `from` and lets it go at `to`, moving there in steps.
void drag(const QPoint &from, const QPoint &to);
/// One key, with modifiers as in "ctrl+comma".
void press(const QString &key);
void type(const QString &text);

} // namespace Hand

} // namespace kelvo
