#pragma once

#include "http/HttpLimits.h"
#include "http/HttpNetwork.h"
#include "http/HttpResponse.h"
#include "http/RouteFinder.h"

#include <QByteArray>
#include <QFuture>
#include <QNetworkRequest>
#include <QObject>
#include <QUrl>

#include <memory>
#include <optional>

namespace kelvo {

enum class HttpBody;
class HttpRound;

/// An HTTP/1.1 client. It writes nothing to disk, caches nothing, and neither keeps nor sends cookies. It requests only
/// http and https addresses, follows redirects except from https to http, and uses the proxies of the system.
///
/// Requests that begin in the same turn of the event loop form a round. Each round looks up host names and proxies on
/// other threads; a lookup that takes longer than the idle timeout fails the transfer. A connection is used only by the
/// round that opened it, and is closed when the last request of the round has ended. No connection, timer or thread
/// remains after that, except for the thread of a lookup that still blocks.
class HttpSession : public QObject
{
    Q_OBJECT

public:
    /// With an empty `userAgent`, requests carry the default User-Agent of the network layer.
    HttpSession(HttpNetwork network, HttpLimits limits, QByteArray userAgent = {});
    ~HttpSession() override;

    /// Requests `url`. The future never holds an exception; see HttpResponse for failures. Destroying the session aborts
    /// pending requests and cancels their futures. A compressed body that decompresses to more than 2 MiB and more than 40
    /// times its size fails the transfer.
    QFuture<HttpResponse> get(const QUrl &url);
    /// Like `get`, but discards the body while it arrives, without decompressing it.
    QFuture<HttpResponse> getDiscardingBody(const QUrl &url);
    /// Posts `json` as "application/json", or no body when it is empty. Discards the body of the response. The post is sent
    /// only once: a connection that breaks before the response fails the transfer, and so does a 307 or 308 redirect.
    QFuture<HttpResponse> postJson(const QUrl &url, const QByteArray &json);

    /// Fails all pending requests at once. Requests that begin afterwards form a new round.
    void abortAll();

private:
    QFuture<HttpResponse> send(const QNetworkRequest &request, HttpBody body,
                               const std::optional<QByteArray> &post = std::nullopt);
    QNetworkRequest request(const QUrl &url) const;
    std::shared_ptr<HttpRound> currentRound();

    HttpNetwork network_;
    RouteFinder finder_;
    HttpLimits limits_;
    QByteArray userAgent_;
    std::shared_ptr<HttpRound> round_; ///< the round of this turn of the event loop; null when no request has begun
};

} // namespace kelvo
