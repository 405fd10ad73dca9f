#include "platform/linux/WaylandProbe.h"

#include <wayland-client.h>

#include <memory>
#include <string_view>

namespace kelvo {

namespace {

struct Disconnect
{
    void operator()(wl_display *display) const { wl_display_disconnect(display); }
};

void onScale(void *data, wl_output *, std::int32_t scale)
{
    if (scale != 1) {
        static_cast<WaylandProbe *>(data)->isScaled = true;
    }
}

void onGeometry(void *, wl_output *, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, const char *,
                const char *, std::int32_t)
{
}

void onMode(void *, wl_output *, std::uint32_t, std::int32_t, std::int32_t, std::int32_t) { }

void onDone(void *, wl_output *) { }

void onGlobal(void *data, wl_registry *registry, std::uint32_t name, const char *interface, std::uint32_t version)
{
    // The version of wl_output in which it tells its scale.
    constexpr std::uint32_t withScale = 2;
    static constexpr wl_output_listener listener{onGeometry, onMode, onDone, onScale, nullptr, nullptr};
    if (interface == std::string_view("zwlr_layer_shell_v1")) {
        static_cast<WaylandProbe *>(data)->hasLayerShell = true;
    } else if (interface == std::string_view("wl_output") && version >= withScale) {
        auto *output = wl_registry_bind(registry, name, &wl_output_interface, withScale);
        wl_output_add_listener(static_cast<wl_output *>(output), &listener, data);
    }
}

void onGlobalRemove(void *, wl_registry *, std::uint32_t) { }

} // namespace

WaylandProbe WaylandProbe::ask()
{
    WaylandProbe probe;
    const std::unique_ptr<wl_display, Disconnect> display(wl_display_connect(nullptr));
    if (display) {
        static constexpr wl_registry_listener listener{onGlobal, onGlobalRemove};
        wl_registry_add_listener(wl_display_get_registry(display.get()), &listener, &probe);
        // The first answer lists the screens, the second describes them.
        wl_display_roundtrip(display.get());
        wl_display_roundtrip(display.get());
    }
    return probe;
}

} // namespace kelvo
