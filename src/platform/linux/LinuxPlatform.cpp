#include "platform/Platform.h"
#include "platform/linux/BusConnection.h"
#include "platform/linux/DBusNotificationCenter.h"
#include "platform/linux/DBusSingleInstance.h"
#include "platform/linux/DesktopAppearance.h"
#include "platform/linux/IniPreferences.h"
#include "platform/linux/LogindSleepWake.h"
#include "platform/linux/RtnetlinkNetworkWatch.h"
#include "platform/linux/TimerfdClock.h"
#include "platform/linux/TrayStatusItem.h"
#include "platform/linux/XdgLoginItem.h"

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// The names of the desktop in XDG_CURRENT_DESKTOP. Some compositors leave it to the user to set this variable.
QStringList currentDesktops()
{
    auto desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
    if (desktops.isEmpty() && qEnvironmentVariableIsSet("SWAYSOCK")) {
        desktops.append(u"sway"_s);
    } else if (desktops.isEmpty() && qEnvironmentVariableIsSet("HYPRLAND_INSTANCE_SIGNATURE")) {
        desktops.append(u"Hyprland"_s);
    }
    return desktops;
}

} // namespace

Platform makePlatform()
{
    const auto session = BusConnection::session();
    return {
        .clock = std::make_unique<TimerfdClock>(),
        .sleepWake = std::make_unique<LogindSleepWake>(BusConnection::system()),
        .networkWatch = std::make_unique<RtnetlinkNetworkWatch>(),
        .notificationCenter = std::make_unique<DBusNotificationCenter>(session),
        .loginItem = std::make_unique<XdgLoginItem>(),
        .preferences = std::make_unique<IniPreferences>(),
        .appearance = std::make_unique<DesktopAppearance>(session, currentDesktops()),
        .statusItem = std::make_unique<TrayStatusItem>(session),
    };
}

std::unique_ptr<SingleInstance> makeSingleInstance()
{
    return std::make_unique<DBusSingleInstance>(BusConnection::session());
}

QString libraryFolder()
{
    return QStringLiteral(KELVO_LIBRARY_FOLDER);
}

} // namespace kelvo
