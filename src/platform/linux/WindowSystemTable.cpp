#include "platform/linux/WindowSystemTable.h"

#include <algorithm>
#include <optional>

namespace kelvo {

namespace {

using Condition = std::optional<bool>;
constexpr Condition any;

struct Row
{
    Condition layerShell;
    Condition plasma;
    Condition scaled;
    const char *platform;
};

/// The window systems of Wayland sessions in which both are possible. The first row that fits counts.
///
/// A Wayland program cannot place its windows, so the popover needs X11 or the layer shell. Xwayland blurs the windows on
/// scaled screens, except in Plasma, where X11 programs draw at the scale of the screen.
constexpr Row rows[] = {
    // layer shell, Plasma, scaled
    {true, any, any, "wayland"},
    {any, true, any, "xcb"},
    {any, any, false, "xcb"},
    {any, any, true, "wayland"},
};

bool fits(Condition condition, bool value)
{
    return condition.value_or(value) == value;
}

} // namespace

QByteArray windowSystemFor(const WindowSystemSession &session)
{
    if (!session.isWayland) {
        return {};
    }
    if (!session.hasPlugin) {
        return session.hasX11 ? "xcb" : "";
    }
    if (!session.hasX11) {
        return "wayland";
    }
    const auto *row = std::find_if(std::begin(rows), std::end(rows), [&session](const Row &candidate) {
        return fits(candidate.layerShell, session.hasLayerShell) && fits(candidate.plasma, session.isPlasma)
            && fits(candidate.scaled, session.isScaled);
    });
    return row->platform;
}

} // namespace kelvo
