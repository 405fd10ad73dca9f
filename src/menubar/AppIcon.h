#pragma once

#include <QIcon>

namespace kelvo::AppIcon {

/// The application icon. It looks like the installed one and works without an installation.
QIcon image();

} // namespace kelvo::AppIcon
