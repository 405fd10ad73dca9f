#include "http/HttpTransfer.h"

#include "http/HttpRound.h"
#include "http/OneTimeBody.h"

#include <array>

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

constexpr qint64 chunkSize = 64 * 1024;

/// Whether the network layer reports `error` for nothing but a status code of 400 or above, so that there is an answer.
/// Every error that is not listed means that the transfer itself broke.
constexpr bool standsForAStatus(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::ContentAccessDenied:               // 403
    case QNetworkReply::ContentOperationNotPermittedError: // 405
    case QNetworkReply::ContentNotFoundError:              // 404
    case QNetworkReply::AuthenticationRequiredError:       // 401
    case QNetworkReply::ProxyAuthenticationRequiredError:  // 407
    case QNetworkReply::ContentConflictError:              // 409
    case QNetworkReply::ContentGoneError:                  // 410
    case QNetworkReply::ProtocolInvalidOperationError:     // 400, 418
    case QNetworkReply::UnknownContentError:               // the other 4xx
    case QNetworkReply::InternalServerError:               // 500
    case QNetworkReply::OperationNotImplementedError:      // 501
    case QNetworkReply::ServiceUnavailableError:           // 503
    case QNetworkReply::UnknownServerError:                // the other 5xx
        return true;
    default: return false;
    }
}

/// A redirect status that names no target ends in an error of its own, although the answer is complete. (After a redirect
/// that was followed, the header is gone, and so are all the others.)
bool isRedirectWithoutTarget(const QNetworkReply &reply, int status)
{
    return reply.error() == QNetworkReply::ProtocolUnknownError && status >= 300 && status < 400
        && !reply.rawHeaderList().isEmpty() && !reply.hasRawHeader("Location"_ba);
}

/// The status of the answer, or nothing when the transfer failed. The status attribute alone does not tell: it still
/// reads 302 after a redirect that led nowhere, and 200 after a body that broke off.
std::optional<int> answeredStatus(const QNetworkReply &reply)
{
    const QVariant attribute = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!attribute.isValid()) {
        return std::nullopt;
    }
    const int status = attribute.toInt();
    const bool answered = reply.error() == QNetworkReply::NoError || isRedirectWithoutTarget(reply, status)
        || (status >= 400 && standsForAStatus(reply.error()));
    return answered ? std::optional(status) : std::nullopt;
}

QNetworkReply *postOnce(QNetworkAccessManager &manager, const QNetworkRequest &request, const QByteArray &content)
{
    auto *body = new OneTimeBody(content);
    QNetworkReply *reply = manager.post(request, body);
    body->setParent(reply);
    return reply;
}

} // namespace

HttpTransfer::HttpTransfer(std::shared_ptr<HttpRound> round, const QNetworkRequest &request, HttpBody body,
                           const std::optional<QByteArray> &post, const HttpLimits &limits, QObject *parent)
    : QObject(parent)
    , round_(std::move(round))
    , reply_(post ? postOnce(round_->manager(), request, *post) : round_->manager().get(request))
    , body_(body)
    , maximumBodySize_(limits.maximumBodySize)
{
    promise_.start();
    connect(reply_.get(), &QNetworkReply::readyRead, this, &HttpTransfer::readBody);
    // Queued, because whoever waits for the future may destroy the session, which must not happen inside the reply.
    connect(reply_.get(), &QNetworkReply::finished, this, &HttpTransfer::finish, Qt::QueuedConnection);

    deadline_.setSingleShot(true);
    connect(&deadline_, &QTimer::timeout, this, &HttpTransfer::fail);
    deadline_.start(limits.totalDeadline);
}

HttpTransfer::~HttpTransfer() = default;

/// Reads in small pieces: all that is available may be a thousand times what has arrived when it is compressed.
void HttpTransfer::readBody()
{
    std::array<char, chunkSize> chunk;
    while (true) {
        const qint64 size = reply_->read(chunk.data(), chunkSize);
        if (size <= 0) {
            return;
        }
        bodySize_ += size;
        if (bodySize_ > maximumBodySize_) {
            reply_->disconnect(this);
            QMetaObject::invokeMethod(this, &HttpTransfer::fail, Qt::QueuedConnection);
            return;
        }
        if (body_ == HttpBody::Keep) {
            kept_.append(chunk.data(), size);
        }
    }
}

void HttpTransfer::finish()
{
    HttpResponse response{.status = answeredStatus(*reply_), .body = {}};
    if (response.status) {
        response.body = std::move(kept_);
    }
    settle(std::move(response));
}

void HttpTransfer::fail()
{
    settle({});
}

/// The reply's own end is not waited for: it goes with this, and is aborted by that.
void HttpTransfer::settle(HttpResponse response)
{
    if (isSettled_) {
        return;
    }
    isSettled_ = true;
    reply_->disconnect(this);
    deadline_.stop();
    deleteLater();

    // The last step, on the stack: a continuation may destroy the session and this with it.
    QPromise<HttpResponse> promise = std::move(promise_);
    promise.addResult(std::move(response));
    promise.finish();
}

} // namespace kelvo
