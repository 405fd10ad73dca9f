#include "simulator/ReroutedNetwork.h"

#include "simulator/SimulatedInternet.h"

#include <QNetworkProxy>

using namespace Qt::StringLiterals;

namespace kelvo {

ReroutedNetwork::ReroutedNetwork(const SimulatedInternet &internet, QObject *parent)
    : QNetworkAccessManager(parent)
{
    setProxy(QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, internet.port()));
}

ReroutedNetwork::ReroutedNetwork(const SimulatedInternet &internet, const QSslConfiguration &configuration,
                                 QObject *parent)
    : ReroutedNetwork(internet, parent)
{
    tls_ = configuration;
}

QNetworkReply *ReroutedNetwork::createRequest(Operation operation, const QNetworkRequest &request, QIODevice *outgoing)
{
    QNetworkRequest rerouted = request;
    QUrl url = request.url();
    if (tls_) {
        rerouted.setSslConfiguration(*tls_);
    } else if (url.scheme() == "https"_L1) {
        // The port keeps the scheme: the simulated internet treats plain requests to port 443 as https.
        url.setScheme(u"http"_s);
        url.setPort(url.port(443));
        rerouted.setUrl(url);
    }
    return QNetworkAccessManager::createRequest(operation, rerouted, outgoing);
}

} // namespace kelvo
