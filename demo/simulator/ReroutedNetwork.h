#pragma once

#include <QNetworkAccessManager>
#include <QSslConfiguration>

#include <optional>

namespace kelvo {

class SimulatedInternet;

/// A network layer that sends every request and redirect to the simulated internet, whatever its host. No request leaves
/// the machine and no name is resolved. (Requests to the loopback address are sent directly.)
class ReroutedNetwork : public QNetworkAccessManager
{
    Q_OBJECT

public:
    /// Does not use TLS: https requests are sent in plain text and recorded as https.
    explicit ReroutedNetwork(const SimulatedInternet &internet, QObject *parent = nullptr);
    /// Uses TLS like the real network, with the trusted certificates of `configuration`.
    ReroutedNetwork(const SimulatedInternet &internet, const QSslConfiguration &configuration,
                    QObject *parent = nullptr);

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request, QIODevice *outgoing) override;

private:
    std::optional<QSslConfiguration> tls_;
};

} // namespace kelvo
