#include "http/HttpTransfer.h"

#include "WhileAlive.h"
#include "http/HttpAddress.h"
#include "http/HttpRound.h"
#include "http/OneTimeBody.h"

#include <array>

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

constexpr int maximumRedirects = 20;
constexpr qint64 chunkSize = 64 * 1024;
/// How much the network layer reads ahead, as it arrives. It decompresses that on this thread, to at most 40 times the size
/// beyond the threshold below.
constexpr qint64 readAhead = 16 * 1024;
constexpr qint64 decompressionThreshold = 2 * 1024 * 1024;

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

/// The status of the answer, or nothing when the transfer failed. The status attribute alone does not tell: it still
/// reads 200 after a body that broke off.
std::optional<int> answeredStatus(const QNetworkReply &reply)
{
    const QVariant attribute = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!attribute.isValid()) {
        return std::nullopt;
    }
    const int status = attribute.toInt();
    const bool answered = reply.error() == QNetworkReply::NoError || (status >= 400 && standsForAStatus(reply.error()));
    return answered ? std::optional(status) : std::nullopt;
}

/// Whether an answer with that status leads elsewhere once it says where.
constexpr bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

/// Whether what was posted would have to be posted to the target too; after the others a GET follows.
constexpr bool repeatsThePost(int redirectStatus)
{
    return redirectStatus == 307 || redirectStatus == 308;
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
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, &HttpTransfer::fail);
    }
    deadline_.start(limits_.totalDeadline);
    request_.setDecompressedSafetyCheckThreshold(decompressionThreshold);
    if (body_ == HttpBody::Discard) {
        // Who names the encodings gets the body as it arrives.
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
    auto &manager = round_->manager();
    reply_.reset(post_ ? postOnce(manager, request_, *post_) : manager.get(request_));
    reply_->setReadBufferSize(readAhead);
    connect(reply_.get(), &QNetworkReply::readyRead, this, &HttpTransfer::readBody);
    // A body that cannot be decompressed may leave the reply without an end.
    connect(reply_.get(), &QNetworkReply::errorOccurred, this, [this] {
        if (!answeredStatus(*reply_)) {
            giveUp();
        }
    });
    // Queued, because whoever waits for the future may destroy the session, which must not happen inside the reply.
    connect(reply_.get(), &QNetworkReply::finished, this, &HttpTransfer::finish, Qt::QueuedConnection);
}

/// The network layer could follow by itself, but would look the target's proxy up on this thread.
void HttpTransfer::follow(int status)
{
    const auto location = QUrl::fromEncoded(reply_->rawHeader("Location"_ba));
    const QUrl target = request_.url().resolved(location);
    const bool isLessSafe = request_.url().scheme() == "https"_L1 && target.scheme() == "http"_L1;
    if (!location.isValid() || !isWebAddress(target) || isLessSafe || ++redirects_ > maximumRedirects
        || (post_ && repeatsThePost(status))) {
        fail();
        return;
    }
    if (post_) {
        post_.reset();
        request_.setHeader(QNetworkRequest::ContentTypeHeader, {});
    }
    request_.setUrl(target);
    reply_.reset();
    bodySize_ = 0;
    kept_.clear();
    start();
}

/// Reads in small pieces: all that is available may be a thousand times what has arrived when it is compressed.
void HttpTransfer::readBody()
{
    const qint64 maximumSize = body_ == HttpBody::Keep ? limits_.maximumKeptSize : limits_.maximumDiscardedSize;
    std::array<char, chunkSize> chunk;
    while (true) {
        const qint64 size = reply_->read(chunk.data(), chunkSize);
        if (size <= 0) {
            return;
        }
        bodySize_ += size;
        if (bodySize_ > maximumSize) {
            giveUp();
            return;
        }
        if (body_ == HttpBody::Keep) {
            kept_.append(chunk.data(), size);
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
        follow(*response.status);
        return;
    }
    if (response.status) {
        response.body = std::move(kept_);
    }
    settle(std::move(response));
}

/// Fails as soon as the reply has returned.
void HttpTransfer::giveUp()
{
    reply_->disconnect(this);
    QMetaObject::invokeMethod(this, &HttpTransfer::fail, Qt::QueuedConnection);
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
    if (reply_) {
        reply_->disconnect(this);
    }
    lookupTimeout_.stop();
    deadline_.stop();
    deleteLater();

    // The last step, on the stack: a continuation may destroy the session and this with it.
    QPromise<HttpResponse> promise = std::move(promise_);
    promise.addResult(std::move(response));
    promise.finish();
}

} // namespace kelvo
