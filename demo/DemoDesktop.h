#pragma once

#include "NotificationWatch.h"

#include "platform/Platform.h"

#include <QDir>

#include <memory>
#include <optional>

/// What differs between the desktops on which the demonstration runs.
namespace kelvo::DemoDesktop {

/// The settings of the demonstration, apart from those of the program.
std::unique_ptr<Preferences> makePreferences();

/// Observes the notifications of the program. May replace the notification center of the platform.
std::unique_ptr<NotificationWatch> makeNotificationWatch(Platform &platform);

/// Makes a folder for pictures of the screen. nullopt when the system does not let a program take them by itself.
std::optional<QDir> makePictureFolder();

} // namespace kelvo::DemoDesktop
