#pragma once

#include <QList>
#include <QNetworkProxy>
#include <QUrl>

#include <functional>
#include <optional>

namespace kelvo {

/// The proxies to reach an origin through, in order of preference; a direct connection is one of them. Never empty.
using HttpRoute = QList<QNetworkProxy>;

/// Finds the route to an origin (see originOf), or nothing when the host to connect to has no address. Runs on any
/// thread, for two origins at a time as well, and may take minutes.
using RouteLookup = std::function<std::optional<HttpRoute>(const QUrl &origin)>;

/// The route that the system's settings give: the environment's, the desktop's, and what a PAC script says. The name of the
/// host to connect to, which is the first proxy's where there is one, is resolved anew: the network layer, which remembers
/// names for a minute, takes this answer in place of what it remembers.
std::optional<HttpRoute> lookUpSystemRoute(const QUrl &origin);

} // namespace kelvo
