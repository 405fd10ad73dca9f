#include "http/HttpTransfer.h"

#include "WhileAlive.h"
#include "http/HttpAddress.h"
#include "http/HttpRound.h"
#include "http/OneTimeBody.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

constexpr int maximumRedirects = 20;
constexpr qint64 chunkSize = 64 * 1024;
/// The number of transferred bytes that the network layer buffers. It decompresses them on this thread, so it gets only few
/// compressed bytes at a time. Beyond `decompressionThreshold` it refuses data that decompresses to more than 40 times its
/// size.
constexpr qint64 compressedReadAhead = 16 * 1024;
constexpr qint64 plainReadAhead = 256 * 1024;
constexpr qint64 decompressionThreshold = 2 * 1024 * 1024;

/// Whether the network layer reports `error` only for a status code of 400 or above. Every other error means that the
/// transfer itself failed.
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

/// Whether a response with this status is the answer to a request. The network layer skips a provisional 100, but takes
/// the other provisional responses, such as 103, and any number below 100 for the answer.
constexpr bool isFinal(int status)
{
    return status == 101 || status >= 200;
}

/// Returns the status of the response, or nullopt when the transfer failed. The status attribute alone is not sufficient:
/// it is still 200 when the connection broke within the body.
std::optional<int> answeredStatus(const QNetworkReply &reply)
{
    const QVariant attribute = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!attribute.isValid()) {
        return std::nullopt;
    }
    const int status = attribute.toInt();
    const bool answered = reply.error() == QNetworkReply::NoError || (status >= 400 && standsForAStatus(reply.error()));
    return answered && isFinal(status) ? std::optional(status) : std::nullopt;
}

/// Whether a response with this status and a Location header is a redirect.
constexpr bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
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
    , request_(request)
    , post_(post)
    , body_(body)
    , limits_(limits)
{
    promise_.start();
    for (auto *timer : {&lookupTimeout_, &deadline_}) {
        connect(timer, &QTimer::timeout, this, &HttpTransfer::fail);
    }
    deadline_.start(limits_.totalDeadline);
    request_.setDecompressedSafetyCheckThreshold(decompressionThreshold);
    if (body_ == HttpBody::Discard) {
        // With an explicit Accept-Encoding header, Qt does not decompress the body.
        request_.setRawHeader("Accept-Encoding"_ba, "gzip, deflate"_ba);
    }
    start();
}

HttpTransfer::~HttpTransfer() = default;

void HttpTransfer::start()
{
    lookupTimeout_.start(limits_.idleTimeout);
    round_->prepare(request_.url()).then(whileAlive(this, [this](bool hasRoute) { hasRoute ? send() : fail(); }));
}

void HttpTransfer::send()
{
    if (isSettled_) {
        return;
    }
    lookupTimeout_.stop();
    bodySize_ = 0; // of a response that was a redirect
    kept_.clear();
    auto &manager = round_->manager();
    reply_.reset(post_ ? postOnce(manager, request_, *post_) : manager.get(request_));
    reply_->setReadBufferSize(compressedReadAhead);
    connect(reply_.get(), &QNetworkReply::metaDataChanged, this, [this] {
        if (!reply_->hasRawHeader("Content-Encoding"_ba)) {
            reply_->setReadBufferSize(plainReadAhead);
        }
    });
    connect(reply_.get(), &QNetworkReply::readyRead, this, &HttpTransfer::readBody);
    wasSent_ = false;
    connect(reply_.get(), &QNetworkReply::requestSent, this, [this] { wasSent_ = true; });
    // After a decompression error the reply may never emit finished().
    connect(reply_.get(), &QNetworkReply::errorOccurred, this, [this] {
        if (!answeredStatus(*reply_)) {
            giveUpOrSendAgain();
        }
    });
    // Queued, because a continuation may destroy the session, and that must not happen inside a signal of the reply.
    connect(reply_.get(), &QNetworkReply::finished, this, &HttpTransfer::finish, Qt::QueuedConnection);
}

/// Follows a redirect. The network layer could do this itself, but it would look up the proxy for the target on this
/// thread. A redirected POST becomes a GET; a status that asks for the body again, 307 or 308, has failed the transfer
/// before, because a OneTimeBody cannot be sent twice.
void HttpTransfer::follow()
{
    const auto location = QUrl::fromEncoded(reply_->rawHeader("Location"_ba));
    const QUrl target = request_.url().resolved(location);
    const bool isLessSafe = request_.url().scheme() == "https"_L1 && target.scheme() == "http"_L1;
    if (!location.isValid() || !isWebAddress(target) || isLessSafe || ++redirects_ > maximumRedirects) {
        fail();
        return;
    }
    if (post_) {
        post_.reset();
        request_.setHeader(QNetworkRequest::ContentTypeHeader, {});
    }
    request_.setUrl(target);
    start();
}

/// Reads the body in small pieces, because compressed data can expand to a thousand times its size.
void HttpTransfer::readBody()
{
    const qint64 maximumSize = body_ == HttpBody::Keep ? limits_.maximumKeptSize : limits_.maximumDiscardedSize;
    // Each read wakes the network thread, so none is made in vain.
    while (reply_->bytesAvailable() > 0) {
        // resize() extends large memory in place, which append() does not.
        const qsizetype keptSize = body_ == HttpBody::Keep ? bodySize_ : 0;
        kept_.resize(keptSize + chunkSize);
        const qint64 size = reply_->read(kept_.data() + keptSize, chunkSize);
        kept_.truncate(keptSize + std::max(size, 0LL));
        if (size <= 0) {
            return;
        }
        bodySize_ += size;
        if (bodySize_ > maximumSize) {
            giveUp();
            return;
        }
    }
}

void HttpTransfer::finish()
{
    if (isSettled_) {
        return;
    }
    HttpResponse response{.status = answeredStatus(*reply_), .body = {}};
    if (response.status && isRedirect(*response.status) && reply_->hasRawHeader("Location"_ba)) {
        follow();
        return;
    }
    if (response.status && body_ == HttpBody::Keep) {
        response.body = std::move(kept_);
    }
    settle(std::move(response));
}

/// When a connection breaks, the network layer also fails the requests that wait for a connection to the same host. Such a
/// GET gets a second chance.
void HttpTransfer::giveUpOrSendAgain()
{
    const bool hasOnlyWaited = !wasSent_ && reply_->error() == QNetworkReply::RemoteHostClosedError;
    if (!hasOnlyWaited || post_ || std::exchange(hadSecondChance_, true)) {
        giveUp();
        return;
    }
    reply_->disconnect(this);
    QMetaObject::invokeMethod(this, &HttpTransfer::send, Qt::QueuedConnection);
}

/// Fails the transfer on the next turn of the event loop, outside of the signals of the reply.
void HttpTransfer::giveUp()
{
    reply_->disconnect(this);
    QMetaObject::invokeMethod(this, &HttpTransfer::fail, Qt::QueuedConnection);
}

void HttpTransfer::fail()
{
    settle({});
}

/// Settles the future without waiting for the reply to finish. The reply is destroyed, and so aborted, with this object.
void HttpTransfer::settle(HttpResponse response)
{
    if (isSettled_) {
        return;
    }
    isSettled_ = true;
    deleteLater();

    // This is the last step and uses only local variables, because a continuation may destroy the session and this object.
    QPromise<HttpResponse> promise = std::move(promise_);
    promise.addResult(std::move(response));
    promise.finish();
}

} // namespace kelvo
