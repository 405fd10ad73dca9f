#include "DemoDesktop.h"

#include "macos/PostedNotificationWatch.h"

#include "platform/macos/UserDefaultsPreferences.h"

namespace kelvo::DemoDesktop {

// The bundle of the demonstration has an identifier of its own, and the user defaults belong to it.
std::unique_ptr<Preferences> makePreferences()
{
    return std::make_unique<UserDefaultsPreferences>();
}

std::unique_ptr<NotificationWatch> makeNotificationWatch(Platform &platform)
{
    return std::make_unique<PostedNotificationWatch>(platform);
}

// The user must allow each program to record the screen, in the settings of the system.
std::optional<QDir> makePictureFolder()
{
    return std::nullopt;
}

} // namespace kelvo::DemoDesktop
