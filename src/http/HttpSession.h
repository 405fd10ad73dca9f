#pragma once

#include "http/HttpLimits.h"
#include "http/HttpResponse.h"

#include <QByteArray>
#include <QFuture>
#include <QNetworkAccessManager>
#include <QObject>
#include <QUrl>

#include <memory>

namespace kelvo {

enum class HttpBody;

/// An HTTP client that leaves nothing on disk, caches nothing, and neither keeps nor sends cookies. It follows redirects,
/// but never from https to http, and only ever requests http and https addresses. The system's proxies are the
/// application's business (QNetworkProxyFactory::setUseSystemConfiguration).
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
    /// Posts `json` as "application/json" (no body at all when it is empty), and discards the answer's body. It is sent once:
    /// a connection that breaks before the answer is a failed transfer, and a 307 or 308 is one as well.
    QFuture<HttpResponse> postJson(const QUrl &url, const QByteArray &json);

    /// Closes connections that are kept open for a next request, as soon as no request is under way.
    void closeIdleConnections();

private:
    QFuture<HttpResponse> follow(QNetworkReply *reply, HttpBody body);
    QNetworkRequest request(const QUrl &url) const;

    std::unique_ptr<QNetworkAccessManager> network_;
    HttpLimits limits_;
    QByteArray userAgent_;
    int underWay_ = 0;
    bool closesConnections_ = false;
};

} // namespace kelvo
