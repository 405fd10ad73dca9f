#pragma once

#include "simulator/SimulatedRequest.h"
#include "simulator/SimulatedResponse.h"
#include "simulator/StatusPageDocument.h"

#include <QHash>
#include <QSet>
#include <QSslCertificate>
#include <QSslKey>
#include <QTcpServer>

#include <array>
#include <optional>

namespace kelvo {

/// The status pages that Kelvo reads.
enum class StatusPage { Claude, OpenAI, Cursor, GitHub };

/// The parts of an incident in Google's feed that a test can choose.
struct SimulatedIncident
{
    QString product = QStringLiteral("Gemini");
    QString severity = QStringLiteral("medium");
    bool hasAffectedLocations = false;
};

/// Simulates the hosts that Kelvo contacts on one port of 127.0.0.1: the vendors' status pages, Google's incident feed,
/// the services themselves, and the hosts that receive alerts. Initially every service is operational and usable. A host
/// that is not known and has no response set does not exist: connections to it break.
///
/// Clients reach it through a `ReroutedNetwork`, by using its port as an HTTP proxy (plain requests, and CONNECT with
/// TLS after `setCertificate`), or with plain requests to the port.
class SimulatedInternet : public QTcpServer
{
    Q_OBJECT

public:
    /// Listens on a free port.
    explicit SimulatedInternet(QObject *parent = nullptr);
    ~SimulatedInternet() override;

    quint16 port() const { return serverPort(); }
    /// The value of `https_proxy` and `http_proxy` for a program that is to use this internet.
    QUrl proxyUrl() const;
    /// All hosts that exist initially.
    static QStringList hosts();
    static QString host(StatusPage page);

    // The documents that the vendors publish.

    /// Sets the status of every component with this exact name. Adds a component when the page has none.
    void setComponent(StatusPage page, const QString &component, const QString &status);
    /// Sets the indicator of the page. Without a description, uses the usual one for the indicator.
    void setIndicator(StatusPage page, const QString &indicator, const QString &description = {});
    /// Sets all components to operational and the indicator to "none".
    void setAllOperational(StatusPage page);
    const StatusPageDocument &document(StatusPage page) const { return documents_[index(page)]; }
    /// Sets or removes the current incident in Google's feed.
    void setGeminiIncident(std::optional<SimulatedIncident> incident);
    /// Sets how many ended incidents the feed also contains. 500 make it larger than a megabyte.
    void setEndedIncidents(int count);
    /// Sets the status with which a service answers at every path that has no response of its own.
    void setProbe(const QString &host, int status);

    // Any other behaviour.

    /// Sets the response to `path` (including the query) on `host`. An empty path means every path of the host.
    void respond(const QString &host, const QByteArray &path, const SimulatedResponse &response);
    /// Sets responses that are given one after the other. The last one is repeated.
    void respondInTurn(const QString &host, const QByteArray &path, const QList<SimulatedResponse> &responses);
    /// Removes the responses to `path`.
    void forget(const QString &host, const QByteArray &path);
    /// Makes connections to the host break.
    void setUnreachable(const QString &host, bool unreachable = true);
    /// Makes connections to every host break.
    void setOffline(bool offline) { offline_ = offline; }
    /// Sets whether a connection stays open for another request. True initially.
    void setKeepsConnections(bool keeps) { keepsConnections_ = keeps; }
    bool keepsConnections() const { return keepsConnections_; }
    /// Closes the connections that are not answering a request.
    void closeIdleConnections();

    // As a proxy.

    /// Sets the certificate that all hosts use for TLS.
    void setCertificate(const QSslCertificate &certificate, const QSslKey &privateKey);
    const QSslCertificate &certificate() const { return certificate_; }
    const QSslKey &privateKey() const { return privateKey_; }
    /// The status with which the proxy answers CONNECT to `host`. 200 opens the tunnel.
    int tunnelStatus(const QString &host) const;
    /// Makes the proxy refuse every CONNECT with this status; 200 makes it accept again.
    void setProxyStatus(int status) { proxyStatus_ = status; }

    // The requests that were received.

    const QList<SimulatedRequest> &requests() const { return requests_; }
    QList<SimulatedRequest> requestsTo(const QString &host) const;
    void clearRequests() { requests_.clear(); }
    /// The number of connections that clients have opened so far.
    int connectionsAccepted() const { return connectionsAccepted_; }
    /// The number of connections that are open.
    int connectionsOpen() const;

    /// Called by connections: records `request` and returns the response of its host.
    SimulatedResponse receive(const SimulatedRequest &request);

Q_SIGNALS:
    void requestReceived(const kelvo::SimulatedRequest &request);

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    using Route = QPair<QString, QByteArray>;

    static std::size_t index(StatusPage page) { return static_cast<std::size_t>(page); }
    bool exists(const QString &host) const;
    std::optional<SimulatedResponse> takeResponse(const Route &route);
    std::optional<SimulatedResponse> vendorResponse(const SimulatedRequest &request) const;

    std::array<StatusPageDocument, 4> documents_;
    std::optional<SimulatedIncident> incident_;
    int endedIncidents_ = 12;
    QByteArray feed_; // as long as nothing changes: it may be large
    QHash<Route, QList<SimulatedResponse>> responses_;
    QSet<QString> unreachable_;
    bool offline_ = false;
    bool keepsConnections_ = true;
    int proxyStatus_ = 200;
    QSslCertificate certificate_;
    QSslKey privateKey_;
    QList<SimulatedRequest> requests_;
    int connectionsAccepted_ = 0;
};

} // namespace kelvo
