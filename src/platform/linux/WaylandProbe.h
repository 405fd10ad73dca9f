#pragma once

namespace kelvo {

/// What a Wayland compositor says about itself.
struct WaylandProbe
{
    bool isScaled = false;      ///< a screen has a scale other than 1
    bool hasLayerShell = false; ///< programs can place windows beside the panels

    /// Asks the compositor of this session. A compositor that cannot be reached has neither.
    static WaylandProbe ask();
};

} // namespace kelvo
