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

/// One request under way: counts and keeps (or drops) the body, holds the total deadline, and settles the future once.
/// Destroyed before it ended, it aborts the request and cancels the future.
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

    QNetworkReply *reply_;
    HttpBody body_;
    qint64 maximumBodySize_;
    qint64 bodySize_ = 0;
    QByteArray kept_;
    QTimer deadline_;
    QPromise<HttpResponse> promise_;
};

} // namespace kelvo
