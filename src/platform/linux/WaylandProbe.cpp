#include "platform/linux/WaylandProbe.h"

#include <wayland-client.h>

#include <memory>
#include <string_view>
#include <vector>

namespace kelvo {

namespace {

struct Release
{
    void operator()(wl_display *display) const { wl_display_disconnect(display); }
    void operator()(wl_registry *registry) const { wl_registry_destroy(registry); }
    void operator()(wl_output *screen) const { wl_output_destroy(screen); }
};

struct Question
{
    WaylandProbe answer;
    std::vector<std::unique_ptr<wl_output, Release>> screens;
};

void onScale(void *data, wl_output *, std::int32_t scale)
{
    if (scale != 1) {
        static_cast<Question *>(data)->answer.isScaled = true;
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
    auto *question = static_cast<Question *>(data);
    if (interface == std::string_view("zwlr_layer_shell_v1")) {
        question->answer.hasLayerShell = true;
    } else if (interface == std::string_view("wl_output") && version >= withScale) {
        auto *screen = static_cast<wl_output *>(wl_registry_bind(registry, name, &wl_output_interface, withScale));
        wl_output_add_listener(screen, &listener, data);
        question->screens.emplace_back(screen);
    }
}

void onGlobalRemove(void *, wl_registry *, std::uint32_t) { }

} // namespace

WaylandProbe WaylandProbe::ask()
{
    const std::unique_ptr<wl_display, Release> display(wl_display_connect(nullptr));
    Question question;
    if (display) {
        static constexpr wl_registry_listener listener{onGlobal, onGlobalRemove};
        const std::unique_ptr<wl_registry, Release> registry(wl_display_get_registry(display.get()));
        wl_registry_add_listener(registry.get(), &listener, &question);
        // The first answer lists the screens, the second describes them.
        wl_display_roundtrip(display.get());
        wl_display_roundtrip(display.get());
    }
    return question.answer;
}

} // namespace kelvo
