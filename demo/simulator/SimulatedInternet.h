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

/// An incident of Google's feed as far as it differs from one simulation to the next.
struct SimulatedIncident
{
    QString product = QStringLiteral("Gemini");
    QString severity = QStringLiteral("medium");
    bool hasAffectedLocations = false;
};

/// The internet as Kelvo sees it, on one port of 127.0.0.1: the vendors' status pages, Google's incident feed, the
/// services themselves, and the hosts that alerts are posted to. In the beginning every service is operational and
/// usable. Hosts that are neither known nor given a response do not exist: their connections break.
///
/// Three ways lead to it: `ReroutedNetwork`, an HTTP proxy address (plain requests, and CONNECT with TLS once there is a
/// certificate), and plain requests straight to the port.
class SimulatedInternet : public QTcpServer
{
    Q_OBJECT

public:
    /// Listens on a port that is free.
    explicit SimulatedInternet(QObject *parent = nullptr);
    ~SimulatedInternet() override;

    quint16 port() const { return serverPort(); }
    /// What `https_proxy` and `http_proxy` are set to, for a program that is to live in this internet.
    QUrl proxyUrl() const;
    /// All hosts that exist from the beginning.
    static QStringList hosts();
    static QString host(StatusPage page);

    // What the vendors publish.

    /// Sets every component of that name, compared exactly; one that the page does not have yet is added.
    void setComponent(StatusPage page, const QString &component, const QString &status);
    /// The description follows the indicator unless it is given.
    void setIndicator(StatusPage page, const QString &indicator, const QString &description = {});
    /// All components operational, the indicator "none".
    void setAllOperational(StatusPage page);
    const StatusPageDocument &document(StatusPage page) const { return documents_[index(page)]; }
    /// The one incident of Google's feed that goes on, or none.
    void setGeminiIncident(std::optional<SimulatedIncident> incident);
    /// How many ended incidents of all Google products the feed carries besides. 500 make more than a megabyte.
    void setEndedIncidents(int count);
    /// What a service itself answers, at any path but those with a response of their own.
    void setProbe(const QString &host, int status);

    // Any other behaviour.

    /// The response to `path` (with the query) on `host`; an empty path stands for every path of that host.
    void respond(const QString &host, const QByteArray &path, const SimulatedResponse &response);
    /// One response after the other; the last one stays.
    void respondInTurn(const QString &host, const QByteArray &path, const QList<SimulatedResponse> &responses);
    /// Takes the responses to `path` back.
    void forget(const QString &host, const QByteArray &path);
    /// The host's connections break.
    void setUnreachable(const QString &host, bool unreachable = true);
    /// Every host's connections break.
    void setOffline(bool offline) { offline_ = offline; }
    /// Whether a connection stays open for a next request, which it does from the beginning.
    void setKeepsConnections(bool keeps) { keepsConnections_ = keeps; }
    bool keepsConnections() const { return keepsConnections_; }
    /// Drops the connections on which nothing is being answered.
    void closeIdleConnections();

    // As a proxy.

    /// The identity of all hosts together, for TLS.
    void setCertificate(const QSslCertificate &certificate, const QSslKey &privateKey);
    const QSslCertificate &certificate() const { return certificate_; }
    const QSslKey &privateKey() const { return privateKey_; }
    /// What the proxy answers to CONNECT for `host`. 200 lets it through.
    int tunnelStatus(const QString &host) const;
    /// Makes the proxy itself refuse every CONNECT with that status; 200 ends it.
    void setProxyStatus(int status) { proxyStatus_ = status; }

    // What was heard.

    const QList<SimulatedRequest> &requests() const { return requests_; }
    QList<SimulatedRequest> requestsTo(const QString &host) const;
    void clearRequests() { requests_.clear(); }
    /// How many connections clients have opened so far, and how many are open.
    int connectionsAccepted() const { return connectionsAccepted_; }
    int connectionsOpen() const;

    /// For connections: records `request` and gives what its host answers.
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
