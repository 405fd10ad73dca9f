#pragma once

#include <thread>
#include <vector>

struct wl_display;
struct wl_event_source;

namespace kelvo {

/// A Wayland compositor that only lists what it has. It is the compositor of this session, in XDG_RUNTIME_DIR, while this
/// object lives.
class FakeCompositor
{
public:
    struct Screen
    {
        int scale = 1;
        int version = 4; ///< of wl_output
    };

    explicit FakeCompositor(std::vector<Screen> screens, bool hasLayerShell = false);
    ~FakeCompositor();
    FakeCompositor(const FakeCompositor &) = delete;
    FakeCompositor &operator=(const FakeCompositor &) = delete;

private:
    std::vector<Screen> screens_;
    wl_display *display_;
    int end_; ///< an eventfd that ends the thread
    wl_event_source *ending_;
    std::thread thread_;
};

} // namespace kelvo
