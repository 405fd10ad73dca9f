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

/// What becomes of an answer's body. Discarded or not, it must arrive whole and within the limits.
enum class HttpBody { Keep, Discard };

/// One request under way, from the lookup of its route over its redirects to the answer: counts and keeps (or drops) the
/// body, holds the total deadline, and settles the future once, whether or not the network layer ever ends the reply.
/// Destroyed before it ended, it aborts the request and cancels the future.
class HttpTransfer : public QObject
{
    Q_OBJECT

public:
    /// Sends `request` as a GET, or as a POST of `post`.
    HttpTransfer(std::shared_ptr<HttpRound> round, const QNetworkRequest &request, HttpBody body,
                 const std::optional<QByteArray> &post, const HttpLimits &limits, QObject *parent);
    ~HttpTransfer() override;

    QFuture<HttpResponse> future() const { return future_; }
    /// Settles the future as a failed transfer, unless it is settled.
    void fail();

private:
    void start();
    void send();
    void follow(int status);
    void readBody();
    void finish();
    void giveUp();
    void settle(HttpResponse response);

    std::shared_ptr<HttpRound> round_;
    QNetworkRequest request_;
    std::optional<QByteArray> post_; ///< the body of a POST; a GET has none
    HttpBody body_;
    HttpLimits limits_;
    int redirects_ = 0;
    std::unique_ptr<QNetworkReply> reply_; ///< gone before the round is
    qint64 bodySize_ = 0;
    QByteArray kept_;
    QTimer lookupTimeout_;
    QTimer deadline_;
    bool isSettled_ = false;
    QPromise<HttpResponse> promise_;
    QFuture<HttpResponse> future_ = promise_.future();
};

} // namespace kelvo
