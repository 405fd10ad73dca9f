#pragma once

#include "Network.h"

#include "simulator/CertificateAuthority.h"

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <chrono>
#include <map>
#include <memory>
#include <vector>

namespace kelvo {

/// A request in the log of the web server.
struct SeenRequest
{
    double time; ///< the time of the response in seconds since 1970
    QByteArray protocol;
    QByteArray host;
    QByteArray method;
    QByteArray path;
    int status;
    qint64 size; ///< the size of the response body
};

/// The servers in the internet: nginx stands in for the vendors and the hosts that receive alerts, with TLS and HTTP/2;
/// haproxy is a load balancer in front of it; tinyproxy is a proxy; dnsmasq is a name server.
class Servers
{
public:
    explicit Servers(const Network &network);
    ~Servers();

    // The web. Initially all services are operational.

    /// Sets how long nginx keeps an idle connection open. Call it before `startWeb`.
    void setKeepAlive(int seconds) { keepAlive_ = seconds; }
    void startWeb();
    /// Sets what Claude's status page reports and how Claude itself answers.
    void setClaudeIsDown(bool down);
    /// Sets the size of Claude's status page, which remains well formed.
    void setPageSize(qint64 bytes);
    QList<SeenRequest> seen(const QByteArray &host) const;

    // Names.

    enum class Names {
        Right,
        RightWithIPv6,
        ToBalancer,
        ToPortal,      ///< every name resolves to the portal, whose certificate is not trusted
        ServerFailure, ///< SERVFAIL
        NoSuchName,    ///< NXDOMAIN
    };
    void startNames(Names names);
    void stopNames();
    /// Sets whether the laptop knows its name server. It does initially.
    void tellResolver(bool known) const;

    // Balancers and proxies.

    void startBalancer();
    /// Starts a proxy. `credentials` has the form "name:password"; if it is empty, the proxy needs no password.
    void startProxy(quint16 port = 8888, const QString &credentials = {});
    void killProxy(quint16 port = 8888);
    void freezeProxy(bool frozen, quint16 port = 8888);
    /// The hosts and ports that were reached through the proxy.
    QList<QByteArray> proxied(quint16 port = 8888) const;
    /// Publishes a proxy script (PAC) on the web server and returns the path of its file.
    QString publishScript(const QByteArray &script);
    /// Starts a balancer on port 8080 that forwards every request for the script after a delay.
    void startScriptServer(std::chrono::seconds delay);

    // Files that replace those of the laptop.

    /// Replaces /etc/resolv.conf. It is always the same file.
    QString resolverFile() const { return directory_.filePath(QStringLiteral("resolv.conf")); }
    /// Replaces /etc/ssl/certs.
    QString trusted() const { return directory_.filePath(QStringLiteral("trusted")); }

private:
    QString file(const QString &name) const { return directory_.filePath(name); }
    void write(const QString &name, const QByteArray &content) const;
    void start(const QString &name, const QStringList &command);
    void stop(const QString &name);
    void awaitPort(const QString &name, const char *address, quint16 port) const;
    void writePage();

    const Network &network_;
    QTemporaryDir directory_;
    std::unique_ptr<CertificateAuthority> authority_;
    std::unique_ptr<CertificateAuthority> portalAuthority_;
    std::map<QString, std::unique_ptr<QProcess>> processes_;
    int keepAlive_ = 75;
    bool claudeIsDown_ = false;
    qint64 pageSize_ = 0;
};

} // namespace kelvo
