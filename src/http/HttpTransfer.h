#pragma once

#include "http/HttpLimits.h"
#include "http/HttpResponse.h"

#include <QFuture>
#include <QNetworkReply>
#include <QPromise>
#include <QTimer>

#include <memory>
#include <optional>

namespace kelvo {

class HttpRound;

/// Whether the body of a response is kept. In both cases it must arrive completely and within the limits.
enum class HttpBody { Keep, Discard };

/// One request, from the lookup of its route through its redirects to the response. It enforces the limits and settles the
/// future exactly once, even if the network layer never finishes the reply. Destroying it before the end aborts the
/// request and cancels the future.
class HttpTransfer : public QObject
{
    Q_OBJECT

public:
    /// Starts `request` as a GET, or as a POST with the body `post`.
    HttpTransfer(std::shared_ptr<HttpRound> round, const QNetworkRequest &request, HttpBody body,
                 const std::optional<QByteArray> &post, const HttpLimits &limits, QObject *parent);
    ~HttpTransfer() override;

    QFuture<HttpResponse> future() const { return future_; }
    /// Settles the future as a failed transfer. Does nothing when it is already settled.
    void fail();

private:
    void start();
    void send();
    void follow();
    void readBody();
    void finish();
    void giveUpOrSendAgain();
    void giveUp();
    void settle(HttpResponse response);

    std::shared_ptr<HttpRound> round_;
    QNetworkRequest request_;
    std::optional<QByteArray> post_; ///< the body of a POST; a GET has none
    HttpBody body_;
    HttpLimits limits_;
    int redirects_ = 0;
    bool wasSent_ = false; ///< whether the network layer has written the request to a connection
    bool hadSecondChance_ = false;
    std::unique_ptr<QNetworkReply> reply_; ///< declared after the round, so that it is destroyed first
    qint64 bodySize_ = 0;
    QByteArray kept_; ///< the body; if it is not kept, memory to read it into
    QTimer lookupTimeout_;
    QTimer deadline_;
    bool isSettled_ = false;
    QPromise<HttpResponse> promise_;
    QFuture<HttpResponse> future_ = promise_.future();
};

} // namespace kelvo
