#pragma once

#include "http/HttpRoute.h"

#include <QNetworkAccessManager>

#include <functional>
#include <memory>

namespace kelvo {

/// What an HTTP session reaches the network through. The default is the real network; tests and the demo substitute it.
struct HttpNetwork
{
    /// Makes the network layer of one round.
    std::function<std::unique_ptr<QNetworkAccessManager>()> makeManager = std::make_unique<QNetworkAccessManager>;
    RouteLookup lookUpRoute = lookUpSystemRoute;
};

} // namespace kelvo
