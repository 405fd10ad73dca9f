#include "http/HttpSession.h"

#include "ReadyFuture.h"
#include "http/HttpAddress.h"
#include "http/HttpRound.h"
#include "http/HttpTransfer.h"

#include <QPointer>

using namespace Qt::StringLiterals;

namespace kelvo {

HttpSession::HttpSession(HttpNetwork network, HttpLimits limits, QByteArray userAgent)
    : network_(std::move(network))
    , finder_(network_.lookUpRoute)
    , limits_(limits)
    , userAgent_(std::move(userAgent))
{
}

HttpSession::~HttpSession()
{
    // Destroy the transfers before the other members: their continuations may still use this session.
    qDeleteAll(findChildren<HttpTransfer *>(Qt::FindDirectChildrenOnly));
}

QFuture<HttpResponse> HttpSession::get(const QUrl &url)
{
    return send(request(url), HttpBody::Keep);
}

QFuture<HttpResponse> HttpSession::getDiscardingBody(const QUrl &url)
{
    return send(request(url), HttpBody::Discard);
}

QFuture<HttpResponse> HttpSession::postJson(const QUrl &url, const QByteArray &json)
{
    QNetworkRequest post = request(url);
    post.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
    return send(post, HttpBody::Discard, json);
}

void HttpSession::abortAll()
{
    round_.reset();
    // A continuation may destroy other transfers and the session.
    QList<QPointer<HttpTransfer>> transfers;
    for (auto *transfer : findChildren<HttpTransfer *>(Qt::FindDirectChildrenOnly)) {
        transfers.append(transfer);
    }
    for (const auto &transfer : std::as_const(transfers)) {
        if (transfer) {
            transfer->fail();
        }
    }
}

QFuture<HttpResponse> HttpSession::send(const QNetworkRequest &request, HttpBody body,
                                        const std::optional<QByteArray> &post)
{
    if (!isWebAddress(request.url())) {
        return readyFuture(HttpResponse{});
    }
    auto *transfer = new HttpTransfer(currentRound(), request, body, post, limits_, this);
    return transfer->future();
}

std::shared_ptr<HttpRound> HttpSession::currentRound()
{
    if (!round_) {
        round_ = std::make_shared<HttpRound>(network_.makeManager(), finder_);
        QMetaObject::invokeMethod(
            this,
            [this, round = std::weak_ptr(round_)] {
                if (round.lock() == round_) {
                    round_.reset();
                }
            },
            Qt::QueuedConnection);
    }
    return round_;
}

QNetworkRequest HttpSession::request(const QUrl &url) const
{
    QNetworkRequest request(url);
    request.setTransferTimeout(static_cast<int>(limits_.idleTimeout.count()));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    // Over HTTP/2 the network layer neither races IPv6 against IPv4 nor repeats a GET on a closing connection.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    // No cookie is sent, because none is kept.
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    if (!userAgent_.isEmpty()) {
        request.setRawHeader("User-Agent"_ba, userAgent_);
    }
    return request;
}

} // namespace kelvo
