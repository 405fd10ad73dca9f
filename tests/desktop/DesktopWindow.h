#pragma once

#include <QRect>
#include <QString>

#include <optional>

namespace kelvo {

/// A window on the screen, whoever's it is.
struct DesktopWindow
{
    QString id;
    /// What it covers of the screen, without the window manager's frame.
    QRect geometry;

    /// The window of exactly that title, if it is shown.
    static std::optional<DesktopWindow> titled(const QString &title);
    /// The title of the window that has the keyboard; empty when none has.
    static QString activeTitle();
};

} // namespace kelvo
