#include "http/HttpRoute.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QNetworkProxyFactory>
#include <QNetworkProxyQuery>

#include <atomic>

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

std::atomic_bool proxyScriptMayHaveRun = false;

/// Whether the environment names a proxy for `scheme`. It takes precedence over the settings of the desktop, which may name
/// a script.
bool environmentNamesProxy(const QString &scheme)
{
    const auto variable = scheme + "_proxy"_L1;
    const auto lowercase = qEnvironmentVariable(qPrintable(variable));
    const auto value = lowercase.isEmpty() ? qEnvironmentVariable(qPrintable(variable.toUpper())) : lowercase;
    return !value.isEmpty() && !value.startsWith("pac+"_L1) && !value.startsWith("wpad:"_L1);
}

/// Whether `host` is this machine, which is never reached through a proxy.
bool isThisMachine(const QString &host)
{
    QHostAddress address;
    return host == "localhost"_L1 || (address.setAddress(host) && address.isLoopback());
}

/// Returns the host that the network layer connects to: the first proxy in the list that supports the scheme, or the host
/// of the origin itself.
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
    if (!environmentNamesProxy(origin.scheme())) {
        proxyScriptMayHaveRun = true;
    }
    const HttpRoute route = isThisMachine(origin.host())
        ? HttpRoute{QNetworkProxy::NoProxy}
        : QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(origin));
    return resolves(hostToConnectTo(route, origin)) ? std::optional(route) : std::nullopt;
}

bool mayHaveRunProxyScript()
{
    return proxyScriptMayHaveRun;
}

} // namespace kelvo
