#pragma once

#include <QByteArray>

namespace kelvo {

/// What decides on the window system of a session.
struct WindowSystemSession
{
    bool isWayland = false;
    bool hasX11 = false;    ///< there is an X server: in a Wayland session, Xwayland
    bool hasPlugin = false; ///< Qt's plugin for Wayland is installed
    bool isPlasma = false;
    bool isScaled = false;      ///< a screen has a scale other than 1
    bool hasLayerShell = false; ///< the compositor and this program have the layer shell
};

/// Returns the name of the platform plugin for the session. Empty means Qt's own choice.
QByteArray windowSystemFor(const WindowSystemSession &session);

} // namespace kelvo
