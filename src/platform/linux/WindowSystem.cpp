#include "platform/WindowSystem.h"

#include "platform/linux/WaylandProbe.h"
#include "platform/linux/WindowSystemTable.h"
#include "platform/linux/Xcb.h"

#include <QCursor>
#include <QDir>
#include <QLibraryInfo>
#include <QScreen>

namespace kelvo::WindowSystem {

using namespace Qt::StringLiterals;

namespace {

constexpr auto platformVariable = "QT_QPA_PLATFORM";

#ifdef KELVO_LAYER_SHELL
constexpr bool hasLayerShell = true;
#else
constexpr bool hasLayerShell = false;
#endif

/// The height of most panels. It is assumed where the desktop does not tell.
constexpr int panelHeight = 40;

bool isWaylandSession()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

bool hasWaylandPlugin()
{
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + u"/platforms"_s);
    return !plugins.entryList({u"libqwayland*.so"_s}, QDir::Files).isEmpty();
}

WindowSystemSession thisSession()
{
    WindowSystemSession session;
    session.isWayland = isWaylandSession();
    if (session.isWayland) {
        const auto probe = WaylandProbe::ask();
        const auto desktops = qgetenv("XDG_CURRENT_DESKTOP").toLower().split(':');
        session.hasX11 = !qEnvironmentVariableIsEmpty("DISPLAY");
        session.hasPlugin = hasWaylandPlugin();
        session.isPlasma = desktops.contains("kde");
        session.isScaled = probe.isScaled;
        session.hasLayerShell = hasLayerShell && probe.hasLayerShell;
    }
    return session;
}

/// The window manager of a compositor that is built on wlroots centres every window, except those that bypass it.
bool isWlroots(xcb_connection_t *connection)
{
    const auto manager = Xcb::number(connection, Xcb::root(connection), "_NET_SUPPORTING_WM_CHECK");
    return manager && Xcb::text(connection, *manager, "_NET_WM_NAME") == "wlroots wm";
}

} // namespace

Choice::Choice()
{
    if (!qEnvironmentVariableIsEmpty(platformVariable)) {
        return;
    }
    const auto platform = windowSystemFor(thisSession());
    isMade_ = !platform.isEmpty() && qputenv(platformVariable, platform);
}

// The choice is not for the programs that this one starts.
Choice::~Choice()
{
    if (isMade_) {
        qunsetenv(platformVariable);
    }
}

PopoverKind popoverKind()
{
    if (auto *connection = Xcb::connection()) {
        return isWaylandSession() && isWlroots(connection) ? PopoverKind::unmanaged : PopoverKind::managed;
    }
    if (!QGuiApplication::platformName().startsWith("wayland"_L1)) {
        return PopoverKind::managed;
    }
    return hasLayerShell && WaylandProbe::ask().hasLayerShell ? PopoverKind::layer : PopoverKind::ordinary;
}

std::optional<QPoint> pointer()
{
    return isWaylandSession() ? std::nullopt : std::optional(QCursor::pos());
}

QRect availableGeometry(const QScreen &screen)
{
    const auto all = screen.geometry();
    const auto available = screen.availableGeometry();
    return isWaylandSession() && available == all ? all.marginsRemoved({0, panelHeight, 0, 0}) : available;
}

QRect geometryWithoutBars(const QScreen &screen)
{
    return availableGeometry(screen);
}

} // namespace kelvo::WindowSystem
