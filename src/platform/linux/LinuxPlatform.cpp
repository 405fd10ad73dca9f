#include "platform/Platform.h"
#include "platform/linux/BusConnection.h"
#include "platform/linux/DBusNotificationCenter.h"
#include "platform/linux/DBusSingleInstance.h"
#include "platform/linux/DesktopAppearance.h"
#include "platform/linux/IniPreferences.h"
#include "platform/linux/LogindSleepWake.h"
#include "platform/linux/PortalLoginItem.h"
#include "platform/linux/RtnetlinkNetworkWatch.h"
#include "platform/linux/TimerfdClock.h"
#include "platform/linux/TrayStatusItem.h"
#include "platform/linux/XdgLoginItem.h"

#include <QCoreApplication>
#include <QFile>

#include <fcntl.h>

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

std::unique_ptr<LoginItem> makeLoginItem(const std::shared_ptr<BusConnection> &session)
{
    auto item = std::make_unique<XdgLoginItem>();
    if (PortalLoginItem::isNeeded()) {
        return std::make_unique<PortalLoginItem>(session, std::move(item));
    }
    return item;
}

} // namespace

Platform makePlatform()
{
    const auto session = BusConnection::session();
    return {
        .clock = std::make_unique<TimerfdClock>(),
        .sleepWake = std::make_unique<LogindSleepWake>(BusConnection::system()),
        .networkWatch = std::make_unique<RtnetlinkNetworkWatch>(),
        .notificationCenter = std::make_unique<DBusNotificationCenter>(session, currentDesktops()),
        .loginItem = makeLoginItem(session),
        .preferences = std::make_unique<IniPreferences>(),
        .appearance = std::make_unique<DesktopAppearance>(session, currentDesktops()),
        .statusItem = std::make_unique<TrayStatusItem>(session),
    };
}

std::unique_ptr<SingleInstance> makeSingleInstance()
{
    return std::make_unique<DBusSingleInstance>(BusConnection::session());
}

QString openLibrary(const QString &name)
{
    // An absolute path, because Qt would otherwise search directories that other users may be able to write to.
    const auto path = QCoreApplication::applicationDirPath() + QStringLiteral("/" KELVO_LIBRARY_FOLDER "/") + name
        + u".so"_s;
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    return file < 0 ? path : QStringLiteral("/proc/self/fd/%1").arg(file);
}

} // namespace kelvo
