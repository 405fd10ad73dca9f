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

/// One request as the web server saw it.
struct SeenRequest
{
    double time; ///< when it was answered, seconds since 1970
    QByteArray protocol;
    QByteArray host;
    QByteArray method;
    QByteArray path;
    int status;
    qint64 size; ///< of the body that was sent
};

/// What stands in the internet: nginx as the vendors and as the hosts that alerts are posted to, over TLS and with HTTP/2
/// offered; haproxy as a balancer before it; tinyproxy; dnsmasq. None of them knows Kelvo.
class Servers
{
public:
    explicit Servers(const Network &network);
    ~Servers();

    // The web. All is well in the beginning.

    /// How long nginx keeps a connection for a next request. Before `startWeb`.
    void setKeepAlive(int seconds) { keepAlive_ = seconds; }
    void startWeb();
    /// Claude's status page says so, and its own address answers accordingly.
    void setClaudeIsDown(bool down);
    /// The page is as long as that, and as well-formed as ever.
    void setPageSize(qint64 bytes);
    QList<SeenRequest> seen(const QByteArray &host) const;

    // Names.

    enum class Names {
        Right,
        RightWithIPv6,
        ToBalancer,
        ToPortal,      ///< every name is the portal's, whose certificate nobody trusts
        ServerFailure, ///< SERVFAIL
        NoSuchName,    ///< NXDOMAIN
    };
    void startNames(Names names);
    void stopNames();
    /// Whether the laptop knows of a name server. It does in the beginning.
    void tellResolver(bool known) const;

    // On the way.

    void startBalancer();
    /// A proxy; with a password when that is given, as "name:password".
    void startProxy(quint16 port = 8888, const QString &credentials = {});
    void killProxy(quint16 port = 8888);
    void freezeProxy(bool frozen, quint16 port = 8888);
    /// The hosts and ports to which that proxy has led.
    QList<QByteArray> proxied(quint16 port = 8888) const;
    /// The web server gives out this proxy configuration script. Gives the file's name.
    QString publishScript(const QByteArray &script);
    /// A balancer before that, at port 8080, which hands every request on after that time.
    void startScriptServer(std::chrono::seconds delay);

    // What the laptop has in the place of its own.

    /// As /etc/resolv.conf; stays the same file.
    QString resolverFile() const { return directory_.filePath(QStringLiteral("resolv.conf")); }
    /// As /etc/ssl/certs.
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
