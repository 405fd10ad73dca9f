#pragma once

#include <QImage>
#include <QPoint>
#include <QSize>
#include <QString>

#include <memory>

namespace kelvo {

/// The desktop that this program runs on, as a person uses it: the picture on the screen, the pointer and the keyboard.
/// All points and pictures are in points of the desktop, whatever the scale of the screen is.
class Desktop
{
public:
    enum class Button { left, middle, right };

    /// The desktop named by the environment of tools/desktop-session.
    static std::unique_ptr<Desktop> current();

    Desktop() = default;
    virtual ~Desktop() = default;
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    /// The whole screen in its own pixels; null if it cannot be taken.
    virtual QImage picture() = 0;
    virtual void moveTo(const QPoint &point) = 0;
    /// Presses and releases the button where the pointer is.
    virtual void click(Button button) = 0;
    virtual void pressEscape() = 0;

protected:
    /// In points.
    static QSize screenSize();
};

} // namespace kelvo
