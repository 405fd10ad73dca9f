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

/// An HTTP/1.1 client that leaves nothing on disk, caches nothing, and neither keeps nor sends cookies. It follows
/// redirects, but never from https to http, and only ever requests http and https addresses. It goes through the system's
/// proxies.
///
/// Requests that begin in one turn of the event loop form a round. Host names and proxies are looked up for each round, off
/// this thread; where that takes longer than the idle timeout, the transfer has failed. A connection serves the round that
/// opened it and no other, and is closed when the last request of that round has ended. No thread, timer or connection is
/// left then, but for a lookup that hangs.
class HttpSession : public QObject
{
    Q_OBJECT

public:
    /// An empty `userAgent` leaves the network layer's own.
    HttpSession(HttpNetwork network, HttpLimits limits, QByteArray userAgent = {});
    ~HttpSession() override;

    /// Never fails: see HttpResponse. Destroying the session cancels what is under way; those futures are cancelled.
    /// A body that is more than 2 MiB and more than 40 times the size of its compressed form is a failed transfer.
    QFuture<HttpResponse> get(const QUrl &url);
    /// Like `get`, and discards the body while it arrives, compressed or not.
    QFuture<HttpResponse> getDiscardingBody(const QUrl &url);
    /// Posts `json` as "application/json" (no body at all when it is empty), and discards the answer's body. It is sent once:
    /// a connection that breaks before the answer is a failed transfer, and a 307 or 308 is one as well.
    QFuture<HttpResponse> postJson(const QUrl &url, const QByteArray &json);

    /// Ends every request that is under way as a failed transfer, at once. What begins afterwards is a round of its own.
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
    std::shared_ptr<HttpRound> round_; ///< that requests of this turn of the event loop belong to
};

} // namespace kelvo
