#include "platform/macos/ConfigurationNetworkWatch.h"

#include <QPointer>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <notify.h>
#include <notify_keys.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kelvo {

namespace {

/// Whether the system has a route and a source address for `address`. Connecting a datagram socket looks up the route and
/// sends no packet.
template<typename Address>
bool hasRouteTo(const Address &address, int family)
{
    const int descriptor = ::socket(family, SOCK_DGRAM, 0);
    if (descriptor < 0) {
        return false;
    }
    const bool connected = ::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    ::close(descriptor);
    return connected;
}

/// Uses addresses that are reserved for documentation (RFC 5737, RFC 3849), which only a default route can match.
bool isOnline()
{
    constexpr in_port_t anyPort = 9;
    sockaddr_in v4{};
    v4.sin_family = AF_INET;
    v4.sin_port = htons(anyPort);
    ::inet_pton(AF_INET, "192.0.2.1", &v4.sin_addr);
    sockaddr_in6 v6{};
    v6.sin6_family = AF_INET6;
    v6.sin6_port = htons(anyPort);
    ::inet_pton(AF_INET6, "2001:db8::1", &v6.sin6_addr);
    return hasRouteTo(v4, AF_INET) || hasRouteTo(v6, AF_INET6);
}

} // namespace

ConfigurationNetworkWatch::ConfigurationNetworkWatch()
    : token_(NOTIFY_TOKEN_INVALID)
{
    // A notification may already be queued when the token is cancelled.
    const QPointer<ConfigurationNetworkWatch> guard(this);
    notify_register_dispatch(kNotifySCNetworkChange, &token_, dispatch_get_main_queue(), ^(int) {
        if (guard && isOnline()) {
            Q_EMIT guard->changed();
        }
    });
}

ConfigurationNetworkWatch::~ConfigurationNetworkWatch()
{
    if (notify_is_valid_token(token_)) {
        notify_cancel(token_);
    }
}

} // namespace kelvo
