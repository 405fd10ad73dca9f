#pragma once

#include <QList>
#include <QNetworkProxy>
#include <QUrl>

#include <functional>
#include <optional>

namespace kelvo {

/// The proxies through which an origin is reached, in order of preference. QNetworkProxy::NoProxy stands for a direct
/// connection. Never empty.
using HttpRoute = QList<QNetworkProxy>;

/// Looks up the route to an origin (see originOf). Returns nullopt when the host to connect to cannot be resolved. Must
/// be callable on any thread, and on several threads at the same time. May block for minutes.
using RouteLookup = std::function<std::optional<HttpRoute>(const QUrl &origin)>;

/// Returns the route according to the settings of the system: environment variables, the desktop's settings, a PAC script.
/// Resolves the host to connect to (the proxy's, if there is one), even if the network layer has it in its cache of one
/// minute; the result replaces the cached one.
std::optional<HttpRoute> lookUpSystemRoute(const QUrl &origin);

} // namespace kelvo
