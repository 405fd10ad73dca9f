#include "WaylandConnection.h"

#include <QtGlobal>

#include <algorithm>
#include <cstring>

namespace kelvo {

namespace {

struct Search
{
    const wl_interface &interface;
    wl_proxy *found = nullptr;
};

void tryToBind(void *data, wl_registry *registry, std::uint32_t name, const char *interface, std::uint32_t version)
{
    auto &search = *static_cast<Search *>(data);
    if (std::strcmp(interface, search.interface.name) == 0) {
        const auto known = static_cast<std::uint32_t>(search.interface.version);
        search.found = static_cast<wl_proxy *>(
            wl_registry_bind(registry, name, &search.interface, std::min(version, known)));
    }
}

void ignoreRemoval(void *, wl_registry *, std::uint32_t) { }

} // namespace

WaylandConnection::WaylandConnection()
    : display_(wl_display_connect(nullptr))
{
    if (!display_) {
        qFatal("The compositor cannot be reached");
    }
}

WaylandConnection::~WaylandConnection()
{
    wl_display_disconnect(display_);
}

wl_proxy *WaylandConnection::bind(const wl_interface &interface)
{
    auto *registry = wl_display_get_registry(display_);
    static constexpr wl_registry_listener listener{tryToBind, ignoreRemoval};
    Search search{interface};
    wl_registry_add_listener(registry, &listener, &search);
    finish();
    wl_registry_destroy(registry);
    if (!search.found) {
        qFatal("The compositor does not offer %s", interface.name);
    }
    return search.found;
}

} // namespace kelvo
