#include "http/HttpRoute.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QNetworkProxyFactory>
#include <QNetworkProxyQuery>

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

/// This machine is never asked through a proxy.
bool isThisMachine(const QString &host)
{
    QHostAddress address;
    return host == "localhost"_L1 || (address.setAddress(host) && address.isLoopback());
}

/// The host that the network layer connects to: it takes the first proxy of the list that can serve the scheme.
QString hostToConnectTo(const HttpRoute &route, const QUrl &origin)
{
    for (const QNetworkProxy &proxy : route) {
        if (proxy.type() == QNetworkProxy::NoProxy) {
            break;
        }
        if (proxy.isTransparentProxy() || (proxy.isCachingProxy() && origin.scheme() == "http"_L1)) {
            return proxy.hostName();
        }
    }
    return origin.host();
}

bool resolves(const QString &host)
{
    return !QHostAddress(host).isNull() || QHostInfo::fromName(host).error() == QHostInfo::NoError;
}

} // namespace

std::optional<HttpRoute> lookUpSystemRoute(const QUrl &origin)
{
    const HttpRoute route = isThisMachine(origin.host())
        ? HttpRoute{QNetworkProxy::NoProxy}
        : QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(origin));
    return resolves(hostToConnectTo(route, origin)) ? std::optional(route) : std::nullopt;
}

} // namespace kelvo
