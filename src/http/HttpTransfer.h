#pragma once

#include "http/HttpLimits.h"
#include "http/HttpResponse.h"

#include <QFuture>
#include <QNetworkReply>
#include <QPromise>
#include <QTimer>

namespace kelvo {

/// What becomes of an answer's body. Discarded or not, it must arrive whole and within the limits.
enum class HttpBody { Keep, Discard };

/// One request under way: counts and keeps (or drops) the body, holds the total deadline, and settles the future once,
/// whether or not the network layer ever ends the reply. Destroyed before it ended, it aborts the request and cancels the
/// future.
class HttpTransfer : public QObject
{
    Q_OBJECT

public:
    HttpTransfer(QNetworkReply *reply, HttpBody body, const HttpLimits &limits, QObject *parent);
    ~HttpTransfer() override;

    QFuture<HttpResponse> future() { return promise_.future(); }

Q_SIGNALS:
    /// The request is over and its connection is free; the future is settled right after.
    void ended();

private:
    void readBody();
    void finish();
    void fail();
    void settle(HttpResponse response);

    QNetworkReply *reply_;
    HttpBody body_;
    qint64 maximumBodySize_;
    qint64 bodySize_ = 0;
    QByteArray kept_;
    QTimer deadline_;
    bool isSettled_ = false;
    QPromise<HttpResponse> promise_;
};

} // namespace kelvo
