#pragma once

#include <QByteArray>
#include <QIcon>

namespace kelvo {

/// Returns the icon as an Apple icon file (.icns) with the sizes 16 to 512 points, at one and two pixels per point.
QByteArray appleIcon(const QIcon &icon);

} // namespace kelvo
