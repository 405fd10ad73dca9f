#include "platform/linux/RtnetlinkNetworkWatch.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <limits>
#include <span>
#include <string_view>
#include <vector>

#include <ifaddrs.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kelvo {

namespace {

constexpr std::uint32_t watchedGroups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR | RTMGRP_IPV4_ROUTE
    | RTMGRP_IPV6_ROUTE;
/// The kernel sends a dump in datagrams of at most this size.
constexpr std::size_t bufferSize = 32 * 1024;

struct DefaultRoute
{
    unsigned char family = AF_UNSPEC;
    std::uint32_t interface = 0;
    std::string key; ///< identifies the route: two routes are equal if and only if their keys are
};

int openSocket(std::uint32_t groups)
{
    const int descriptor = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
    if (descriptor < 0) {
        return -1;
    }
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = groups;
    if (::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

/// Reads a structure at `offset`. Returns false when the bytes end before the structure does.
template<typename Structure>
bool readAt(std::span<const std::byte> bytes, std::size_t offset, Structure &structure)
{
    if (offset > bytes.size() || bytes.size() - offset < sizeof structure) {
        return false;
    }
    std::memcpy(&structure, bytes.data() + offset, sizeof structure);
    return true;
}

constexpr std::size_t aligned(std::size_t size)
{
    constexpr std::size_t alignment = 4; // NLMSG_ALIGNTO and RTA_ALIGNTO
    return (size + alignment - 1) / alignment * alignment;
}

/// Whether the route leads out of this machine's network. Besides plain default routes this accepts prefixes of length 1
/// (OpenVPN splits the default route into two) and other routing tables (WireGuard uses its own).
bool leadsOut(const rtmsg &route)
{
    return route.rtm_dst_len <= 1 && route.rtm_type == RTN_UNICAST && route.rtm_table != RT_TABLE_LOCAL
        && (route.rtm_flags & RTM_F_CLONED) == 0;
}

/// Parses an RTM_NEWROUTE message. Returns false when it is not a default route.
bool parseRoute(std::span<const std::byte> message, DefaultRoute &result)
{
    rtmsg route{};
    std::size_t offset = aligned(sizeof(nlmsghdr));
    if (!readAt(message, offset, route) || !leadsOut(route)) {
        return false;
    }
    result.family = route.rtm_family;
    result.key = std::to_string(route.rtm_family) + '/' + std::to_string(route.rtm_dst_len);
    offset += aligned(sizeof route);
    for (rtattr attribute{}; readAt(message, offset, attribute) && attribute.rta_len >= sizeof attribute;
         offset += aligned(attribute.rta_len)) {
        const std::size_t size = std::min<std::size_t>(attribute.rta_len, message.size() - offset) - sizeof attribute;
        const auto payload = message.subspan(offset + sizeof attribute, size);
        switch (attribute.rta_type) {
        case RTA_OIF: readAt(payload, 0, result.interface); [[fallthrough]];
        case RTA_DST:
        case RTA_GATEWAY:
        case RTA_VIA:
        case RTA_PREFSRC:
        case RTA_PRIORITY:
        case RTA_TABLE:
        case RTA_MULTIPATH:
            result.key += ' ' + std::to_string(attribute.rta_type) + '=';
            result.key.append(reinterpret_cast<const char *>(payload.data()), payload.size());
            break;
        default: break; // other attributes, such as lifetimes, change while the route stays the same
        }
    }
    return true;
}

/// Calls `handle` for each message in `bytes`. Returns false when a message ends the dump.
template<typename Handle>
bool forEachMessage(std::span<const std::byte> bytes, Handle handle)
{
    nlmsghdr header{};
    while (readAt(bytes, 0, header) && header.nlmsg_len >= sizeof header && header.nlmsg_len <= bytes.size()) {
        if (header.nlmsg_type == NLMSG_DONE || header.nlmsg_type == NLMSG_ERROR) {
            return false;
        }
        handle(header.nlmsg_type, bytes.first(header.nlmsg_len));
        bytes = bytes.subspan(std::min(aligned(header.nlmsg_len), bytes.size()));
    }
    return true;
}

std::vector<DefaultRoute> defaultRoutes()
{
    std::vector<DefaultRoute> routes;
    const int descriptor = openSocket(0);
    if (descriptor < 0) {
        return routes;
    }
    struct
    {
        nlmsghdr header;
        rtmsg route;
    } request{};
    request.header.nlmsg_len = sizeof request;
    request.header.nlmsg_type = RTM_GETROUTE;
    request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    request.route.rtm_family = AF_UNSPEC;
    if (::send(descriptor, &request, sizeof request, 0) == sizeof request) {
        std::vector<std::byte> buffer(bufferSize);
        const auto collect = [&routes](std::uint16_t type, std::span<const std::byte> message) {
            DefaultRoute route;
            if (type == RTM_NEWROUTE && parseRoute(message, route)) {
                routes.push_back(std::move(route));
            }
        };
        for (ssize_t size = 1; size > 0;) {
            size = ::recv(descriptor, buffer.data(), buffer.size(), 0);
            if (size > 0 && !forEachMessage(std::span(buffer).first(static_cast<std::size_t>(size)), collect)) {
                break;
            }
        }
    }
    ::close(descriptor);
    return routes;
}

std::string_view addressBytes(const sockaddr &address)
{
    const auto bytes = [](const auto &value) {
        return std::string_view(reinterpret_cast<const char *>(&value), sizeof value);
    };
    return address.sa_family == AF_INET ? bytes(reinterpret_cast<const sockaddr_in &>(address).sin_addr)
                                        : bytes(reinterpret_cast<const sockaddr_in6 &>(address).sin6_addr);
}

bool isLinkLocal(const sockaddr &address)
{
    return address.sa_family == AF_INET6
        && IN6_IS_ADDR_LINKLOCAL(&reinterpret_cast<const sockaddr_in6 &>(address).sin6_addr);
}

/// Returns every default route paired with every address of its interface, for interfaces that are running. A route
/// whose interface has no address cannot be used yet and is left out.
std::set<std::string> currentWaysOut()
{
    const auto routes = defaultRoutes();
    ifaddrs *first = nullptr;
    if (routes.empty() || ::getifaddrs(&first) != 0) {
        return {};
    }
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(first, &::freeifaddrs);
    std::set<std::string> ways;
    for (const auto *entry = first; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || (entry->ifa_flags & IFF_RUNNING) == 0 || isLinkLocal(*entry->ifa_addr)) {
            continue;
        }
        const auto interface = ::if_nametoindex(entry->ifa_name);
        for (const auto &route : routes) {
            // A multipath route has no single interface (0) and matches every one.
            if (route.family == entry->ifa_addr->sa_family && (route.interface == 0 || route.interface == interface)) {
                ways.insert(route.key + " from " + std::string(addressBytes(*entry->ifa_addr)));
            }
        }
    }
    return ways;
}

/// Returns the addresses in the nameserver lines; see resolv.conf(5).
std::set<std::string> nameServersIn(const QString &resolverFile)
{
    std::set<std::string> servers;
    std::ifstream lines(QFile::encodeName(resolverFile).toStdString());
    for (std::string keyword; lines >> keyword; lines.ignore(std::numeric_limits<std::streamsize>::max(), '\n')) {
        std::string address;
        if (keyword == "nameserver" && lines >> address) {
            servers.insert(address);
        }
    }
    return servers;
}

bool containsNew(const std::set<std::string> &now, const std::set<std::string> &before)
{
    return !std::includes(before.begin(), before.end(), now.begin(), now.end());
}

} // namespace

RtnetlinkNetworkWatch::RtnetlinkNetworkWatch(const QString &resolverFile)
    : socket_(openSocket(watchedGroups))
    , resolver_(resolverFile)
    , nameServers_(nameServersIn(resolverFile))
{
    connect(&resolver_, &FileWatch::changed, this, &RtnetlinkNetworkWatch::readNameServers);
    if (socket_ < 0) {
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &RtnetlinkNetworkWatch::readNotifications);
    waysOut_ = currentWaysOut();
}

RtnetlinkNetworkWatch::~RtnetlinkNetworkWatch()
{
    notifier_.reset();
    if (socket_ >= 0) {
        ::close(socket_);
    }
}

/// Discards the messages, because some may be lost when the socket buffer overflows, and reads the current state instead.
void RtnetlinkNetworkWatch::readNotifications()
{
    std::array<std::byte, 4096> buffer;
    // An overflow ends the loop. What is left then makes the notifier call again.
    while (::recv(socket_, buffer.data(), buffer.size(), MSG_DONTWAIT | MSG_TRUNC) > 0) { }

    auto now = currentWaysOut();
    const bool appeared = containsNew(now, waysOut_);
    waysOut_ = std::move(now);
    if (appeared) {
        Q_EMIT changed();
    }
}

void RtnetlinkNetworkWatch::readNameServers()
{
    auto now = nameServersIn(resolver_.file());
    const bool appeared = containsNew(now, nameServers_);
    nameServers_ = std::move(now);
    if (appeared && !waysOut_.empty()) {
        Q_EMIT changed();
    }
}

} // namespace kelvo
