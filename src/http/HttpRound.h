#pragma once

#include "http/HttpRoute.h"

#include <QFuture>
#include <QHash>
#include <QNetworkAccessManager>
#include <QObject>
#include <QPromise>

#include <map>
#include <memory>
#include <vector>

namespace kelvo {

class RouteFinder;

/// The state that the requests of one round share: the routes to their hosts, and the network layer with its connections
/// and its thread. Destroying the round closes the connections. All replies must be destroyed before.
class HttpRound : public QObject
{
    Q_OBJECT

public:
    /// If `manager` has a proxy set, that proxy is used and no route is looked up. `finder` must outlive this object.
    HttpRound(std::unique_ptr<QNetworkAccessManager> manager, RouteFinder &finder);
    ~HttpRound() override;

    QNetworkAccessManager &manager() { return *manager_; }
    /// Prepares the manager for requests to the origin of `url`. The first call for an origin looks up its route. Gives
    /// false when there is no route. The future is cancelled when the round is destroyed first.
    QFuture<bool> prepare(const QUrl &url);

private:
    class Routes;

    void setRoute(const QUrl &origin, const std::optional<HttpRoute> &route);

    RouteFinder &finder_;
    Routes *routes_ = nullptr; ///< owned by the manager; null when no routes are looked up
    QHash<QUrl, QFuture<std::optional<HttpRoute>>> lookups_;
    std::map<QUrl, std::vector<QPromise<bool>>> waiting_;
    std::unique_ptr<QNetworkAccessManager> manager_;
};

} // namespace kelvo
