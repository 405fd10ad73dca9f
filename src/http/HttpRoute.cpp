#include "http/HttpRoute.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QNetworkProxyFactory>
#include <QNetworkProxyQuery>

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

/// Whether `host` is this machine, which is never reached through a proxy.
bool isThisMachine(const QString &host)
{
    QHostAddress address;
    return host == "localhost"_L1 || (address.setAddress(host) && address.isLoopback());
}

/// Returns the host that the network layer connects to: the first proxy of the system that passes everything on, or the host
/// of the origin itself.
QString hostToConnectTo(const HttpRoute &route, const QUrl &origin)
{
    for (const QNetworkProxy &proxy : route) {
        if (proxy.type() == QNetworkProxy::NoProxy) {
            break;
        }
        if (proxy.isTransparentProxy()) {
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
