#include "http/HttpSession.h"

#include "http/HttpTransfer.h"
#include "http/OneTimeBody.h"

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

constexpr int maximumRedirects = 20;

bool isWebAddress(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty() && (url.scheme() == "http"_L1 || url.scheme() == "https"_L1);
}

QFuture<HttpResponse> failedAtOnce()
{
    return QtFuture::makeReadyFuture(HttpResponse{});
}

} // namespace

HttpSession::HttpSession(std::unique_ptr<QNetworkAccessManager> network, HttpLimits limits, QByteArray userAgent)
    : network_(std::move(network))
    , limits_(limits)
    , userAgent_(std::move(userAgent))
{
}

HttpSession::~HttpSession()
{
    // Before the network that carries them.
    qDeleteAll(findChildren<HttpTransfer *>(Qt::FindDirectChildrenOnly));
}

QFuture<HttpResponse> HttpSession::get(const QUrl &url)
{
    return isWebAddress(url) ? follow(network_->get(request(url)), HttpBody::Keep) : failedAtOnce();
}

QFuture<HttpResponse> HttpSession::getDiscardingBody(const QUrl &url)
{
    return isWebAddress(url) ? follow(network_->get(request(url)), HttpBody::Discard) : failedAtOnce();
}

QFuture<HttpResponse> HttpSession::postJson(const QUrl &url, const QByteArray &json)
{
    if (!isWebAddress(url)) {
        return failedAtOnce();
    }
    QNetworkRequest post = request(url);
    post.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
    auto *body = new OneTimeBody(json);
    QNetworkReply *reply = network_->post(post, body);
    body->setParent(reply);
    QFuture<HttpResponse> response = follow(reply, HttpBody::Discard);
    // Posts are far between, and one that finds a kept connection stale would be lost.
    closeIdleConnections();
    return response;
}

void HttpSession::closeIdleConnections()
{
    // The network layer can only close them all, and a request that is under way would then never end.
    closesConnections_ = underWay_ > 0;
    if (!closesConnections_) {
        network_->clearConnectionCache();
    }
}

QFuture<HttpResponse> HttpSession::follow(QNetworkReply *reply, HttpBody body)
{
    auto *transfer = new HttpTransfer(reply, body, limits_, this);
    ++underWay_;
    connect(transfer, &HttpTransfer::ended, this, [this] {
        --underWay_;
        if (closesConnections_) {
            closeIdleConnections();
        }
    });
    return transfer->future();
}

QNetworkRequest HttpSession::request(const QUrl &url) const
{
    QNetworkRequest request(url);
    request.setTransferTimeout(static_cast<int>(limits_.idleTimeout.count()));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(maximumRedirects);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    // Below the cap a body may be compressed as well as it likes; beyond it the transfer is over anyway.
    request.setDecompressedSafetyCheckThreshold(limits_.maximumBodySize);
    if (!userAgent_.isEmpty()) {
        request.setRawHeader("User-Agent"_ba, userAgent_);
    }
    return request;
}

} // namespace kelvo
