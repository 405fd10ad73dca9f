#pragma once

#include <QIcon>

namespace kelvo::AppIcon {

/// The program’s own icon, as the installed one looks, for where nothing is installed.
QIcon image();

} // namespace kelvo::AppIcon
