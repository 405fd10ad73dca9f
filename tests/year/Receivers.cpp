#include "Receivers.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkProxy>
#include <QNetworkReply>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

/// The reply of a receiver. It has no body.
class Receipt : public QNetworkReply
{
public:
    Receipt(const QNetworkRequest &request, bool isSuccess)
    {
        setRequest(request);
        setUrl(request.url());
        setOperation(QNetworkAccessManager::PostOperation);
        open(QIODevice::ReadOnly);
        setAttribute(QNetworkRequest::HttpStatusCodeAttribute, isSuccess ? 200 : 500);
        if (!isSuccess) {
            setError(InternalServerError, u"Internal Server Error"_s);
        }
        setFinished(true);
        QMetaObject::invokeMethod(this, &QNetworkReply::finished, Qt::QueuedConnection);
    }

    void abort() override { }

protected:
    qint64 readData(char *, qint64) override { return -1; }
};

class Network : public QNetworkAccessManager
{
public:
    Network(std::vector<Deeds::Post> &posts, Random &random)
        : posts_(posts)
        , random_(random)
    {
        // With a proxy no route is looked up.
        setProxy(QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, 9));
    }

protected:
    QNetworkReply *createRequest(Operation, const QNetworkRequest &request, QIODevice *content) override
    {
        const auto message = QJsonDocument::fromJson(content ? content->readAll() : QByteArray()).object();
        posts_.push_back(
            {request.url().toString(), message.value("text"_L1).toString(), message.value("chat_id"_L1).toString()});
        return new Receipt(request, !random_.once(5));
    }

private:
    std::vector<Deeds::Post> &posts_;
    Random &random_;
};

} // namespace

HttpNetwork receivers(std::vector<Deeds::Post> &posts, Random &random)
{
    return {[&posts, &random] { return std::make_unique<Network>(posts, random); }};
}

} // namespace kelvo
