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

/// What the requests of one round share, and nothing of it outlives them: the routes to their hosts, and the network layer
/// with its connections and its thread. Destroying it closes the connections. Every reply must be gone by then.
class HttpRound : public QObject
{
    Q_OBJECT

public:
    /// A manager that has a proxy of its own goes through that, and nothing is looked up.
    HttpRound(std::unique_ptr<QNetworkAccessManager> manager, RouteFinder &finder);
    ~HttpRound() override;

    QNetworkAccessManager &manager() { return *manager_; }
    /// Gets the manager ready for requests to the origin of `url`: looks its route up the first time. False when there is
    /// none. The future is cancelled when the round ends before.
    QFuture<bool> prepare(const QUrl &url);

private:
    class Routes;

    void setRoute(const QUrl &origin, const std::optional<HttpRoute> &route);

    RouteFinder &finder_;
    Routes *routes_ = nullptr; ///< null where nothing is looked up; the manager's
    QHash<QUrl, QFuture<std::optional<HttpRoute>>> lookups_;
    std::map<QUrl, std::vector<QPromise<bool>>> waiting_;
    std::unique_ptr<QNetworkAccessManager> manager_;
};

} // namespace kelvo
