#pragma once

#include <QNetworkAccessManager>
#include <QSslConfiguration>

#include <optional>

namespace kelvo {

class SimulatedInternet;

/// A network layer whose every request, redirects included, reaches the simulated internet, whatever its host. Nothing
/// leaves the machine, and no name is resolved. (Only requests to this machine itself go straight to it.)
class ReroutedNetwork : public QNetworkAccessManager
{
    Q_OBJECT

public:
    /// Leaves TLS out: https requests travel in plain text (and are recorded as https).
    explicit ReroutedNetwork(const SimulatedInternet &internet, QObject *parent = nullptr);
    /// Speaks TLS as the real network does, with the trust that `configuration` holds.
    ReroutedNetwork(const SimulatedInternet &internet, const QSslConfiguration &configuration,
                    QObject *parent = nullptr);

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request, QIODevice *outgoing) override;

private:
    std::optional<QSslConfiguration> tls_;
};

} // namespace kelvo
