#pragma once

#include <QRect>
#include <QString>

#include <optional>

namespace kelvo {

/// A window on the screen, of any program.
struct DesktopWindow
{
    QString id;
    /// The rectangle on the screen, without the frame of the window manager.
    QRect geometry;

    /// Returns the visible window with exactly this title, or nullopt.
    static std::optional<DesktopWindow> titled(const QString &title);
    /// The title of the window with the keyboard focus; empty when there is none.
    static QString activeTitle();
};

} // namespace kelvo
