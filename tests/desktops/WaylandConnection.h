#pragma once

#include <wayland-client.h>

#include <cstdint>

namespace kelvo {

/// A connection to the compositor, for protocols that have no library. All failures are fatal.
class WaylandConnection
{
public:
    WaylandConnection();
    ~WaylandConnection();
    WaylandConnection(const WaylandConnection &) = delete;
    WaylandConnection &operator=(const WaylandConnection &) = delete;

    /// Binds the global object with this interface.
    wl_proxy *bind(const wl_interface &interface);
    /// Waits until the compositor has handled all requests.
    void finish() { wl_display_roundtrip(display_); }

private:
    wl_display *display_;
};

/// Sends a request without a new object.
template<typename... Arguments>
void request(wl_proxy *proxy, std::uint32_t opcode, Arguments... arguments)
{
    wl_proxy_marshal_flags(proxy, opcode, nullptr, wl_proxy_get_version(proxy), 0, arguments...);
}

/// The code that the kernel gives to a button of the mouse: left, middle, right.
constexpr std::uint32_t buttonCodes[] = {0x110, 0x112, 0x111};

} // namespace kelvo
