#include "http/HttpRound.h"

#include "ReadyFuture.h"
#include "WhileAlive.h"
#include "http/HttpAddress.h"
#include "http/RouteFinder.h"

#include <QNetworkProxyFactory>
#include <QNetworkProxyQuery>

namespace kelvo {

/// Gives the network layer the routes that were looked up. By itself it would query the system on the main thread, with
/// the whole address.
class HttpRound::Routes : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        return known.value(originOf(query.url())).value_or(HttpRoute{QNetworkProxy::NoProxy});
    }

    QHash<QUrl, std::optional<HttpRoute>> known;
};

HttpRound::HttpRound(std::unique_ptr<QNetworkAccessManager> manager, RouteFinder &finder)
    : finder_(finder)
    , manager_(std::move(manager))
{
    if (manager_->proxy().type() == QNetworkProxy::DefaultProxy && !manager_->proxyFactory()) {
        routes_ = new Routes;
        manager_->setProxyFactory(routes_);
    }
}

HttpRound::~HttpRound()
{
    for (auto &lookup : lookups_) {
        lookup.cancel();
    }
}

QFuture<bool> HttpRound::prepare(const QUrl &url)
{
    if (!routes_) {
        return readyFuture(true);
    }
    const QUrl origin = originOf(url);
    if (const auto known = routes_->known.constFind(origin); known != routes_->known.cend()) {
        return readyFuture(known->has_value());
    }
    auto &waiting = waiting_[origin];
    auto &promise = waiting.emplace_back();
    promise.start();
    auto future = promise.future();
    if (waiting.size() == 1) {
        auto lookup = finder_.find(origin);
        lookups_.insert(origin, lookup);
        lookup.then(
            whileAlive(this, [this, origin](const std::optional<HttpRoute> &route) { setRoute(origin, route); }));
    }
    return future;
}

void HttpRound::setRoute(const QUrl &origin, const std::optional<HttpRoute> &route)
{
    lookups_.remove(origin);
    routes_->known.insert(origin, route);
    auto waiting = std::move(waiting_.extract(origin).mapped());
    // This is the last step and uses only local variables, because a continuation may destroy this object.
    for (auto &promise : waiting) {
        promise.addResult(route.has_value());
        promise.finish();
    }
}

} // namespace kelvo
