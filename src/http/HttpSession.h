#pragma once

#include <QByteArray>
#include <QFuture>
#include <QNetworkAccessManager>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>

namespace kelvo {

/// What a request came to. `status` is missing when the transfer failed: no network, name resolution, TLS, a timeout,
/// a broken or oversized body, a refused redirect. Otherwise it is the final response's HTTP status code, whatever it is.
struct HttpResponse
{
    std::optional<int> status;
    QByteArray body; ///< decoded; empty when the transfer failed
};

/// The bounds of one request.
struct HttpLimits
{
    std::chrono::milliseconds idleTimeout;              ///< without a byte in either direction
    std::chrono::milliseconds totalDeadline{60'000};    ///< from the request to the last byte of the final response
    qint64 maximumBodySize = 32 * 1024 * 1024;          ///< of the decoded body, bytes
};

/// An HTTP client that leaves nothing on disk and caches nothing. It follows redirects, but never from https to http,
/// and only ever requests http and https addresses. The system's proxies are the application's business
/// (QNetworkProxyFactory::setUseSystemConfiguration).
class HttpSession : public QObject
{
    Q_OBJECT

public:
    /// `network` carries the requests; whoever tests or demonstrates passes one that leads elsewhere.
    /// An empty `userAgent` leaves the network layer's own.
    HttpSession(std::unique_ptr<QNetworkAccessManager> network, HttpLimits limits, QByteArray userAgent = {});
    ~HttpSession() override;

    /// Never fails: see HttpResponse. Destroying the session cancels what is under way; those futures are cancelled.
    QFuture<HttpResponse> get(const QUrl &url);
    /// Like `get`, and discards the body while it arrives.
    QFuture<HttpResponse> getDiscardingBody(const QUrl &url);
    /// Posts `json` as "application/json" (no body at all when it is empty), and discards the answer's body.
    QFuture<HttpResponse> postJson(const QUrl &url, const QByteArray &json);

    /// Closes connections that are kept open for a next request.
    void closeIdleConnections();

private:
    enum class Body { Keep, Discard };
    QFuture<HttpResponse> follow(QNetworkReply *reply, Body body);
    QNetworkRequest request(const QUrl &url) const;

    std::unique_ptr<QNetworkAccessManager> network_;
    HttpLimits limits_;
    QByteArray userAgent_;
};

} // namespace kelvo
