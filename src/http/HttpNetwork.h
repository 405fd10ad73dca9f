#pragma once

#include "http/HttpRoute.h"

#include <QNetworkAccessManager>

#include <functional>
#include <memory>

namespace kelvo {

/// The network that an HTTP session uses. The default is the real network; tests and the demonstration substitute it.
struct HttpNetwork
{
    /// Makes the network layer of one round.
    std::function<std::unique_ptr<QNetworkAccessManager>()> makeManager = std::make_unique<QNetworkAccessManager>;
    /// Looks up the proxies and the host for an origin.
    RouteLookup lookUpRoute = lookUpSystemRoute;
};

} // namespace kelvo
