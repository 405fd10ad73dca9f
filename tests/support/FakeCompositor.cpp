#include "support/FakeCompositor.h"

#include <QByteArray>

#include <wayland-server.h>

#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace kelvo {

namespace {

constexpr wl_interface layerShell{"zwlr_layer_shell_v1", 1, 0, nullptr, 0, nullptr};

void bindScreen(wl_client *client, void *data, std::uint32_t version, std::uint32_t id)
{
    auto *output = wl_resource_create(client, &wl_output_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(output, nullptr, nullptr, nullptr);
    wl_output_send_geometry(output, 0, 0, 340, 190, WL_OUTPUT_SUBPIXEL_UNKNOWN, "Maker", "Model",
                            WL_OUTPUT_TRANSFORM_NORMAL);
    wl_output_send_mode(output, WL_OUTPUT_MODE_CURRENT, 1920, 1080, 60000);
    if (version >= WL_OUTPUT_SCALE_SINCE_VERSION) {
        wl_output_send_scale(output, static_cast<const FakeCompositor::Screen *>(data)->scale);
        wl_output_send_done(output);
    }
}

void bindLayerShell(wl_client *client, void *, std::uint32_t version, std::uint32_t id)
{
    wl_resource_create(client, &layerShell, static_cast<int>(version), id);
}

int endLoop(int, std::uint32_t, void *display)
{
    wl_display_terminate(static_cast<wl_display *>(display));
    return 0;
}

} // namespace

FakeCompositor::FakeCompositor(std::vector<Screen> screens, bool hasLayerShell)
    : screens_(std::move(screens))
    , display_(wl_display_create())
    , end_(::eventfd(0, EFD_CLOEXEC))
{
    const char *name = wl_display_add_socket_auto(display_);
    if (!name) {
        qFatal("the compositor cannot listen in XDG_RUNTIME_DIR");
    }
    for (auto &screen : screens_) {
        wl_global_create(display_, &wl_output_interface, screen.version, &screen, bindScreen);
    }
    if (hasLayerShell) {
        wl_global_create(display_, &layerShell, 1, nullptr, bindLayerShell);
    }
    qputenv("WAYLAND_DISPLAY", QByteArray(name));
    // wl_display_terminate has no effect before wl_display_run has begun, so the thread itself calls it.
    ending_ = wl_event_loop_add_fd(wl_display_get_event_loop(display_), end_, WL_EVENT_READABLE, endLoop, display_);
    thread_ = std::thread([this] { wl_display_run(display_); });
}

FakeCompositor::~FakeCompositor()
{
    qunsetenv("WAYLAND_DISPLAY");
    ::eventfd_write(end_, 1);
    thread_.join();
    wl_event_source_remove(ending_);
    wl_display_destroy_clients(display_);
    wl_display_destroy(display_);
    ::close(end_);
}

} // namespace kelvo
