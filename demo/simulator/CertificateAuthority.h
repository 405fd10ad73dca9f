#pragma once

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace kelvo {

/// A certificate and its private key.
struct TlsIdentity
{
    QSslCertificate certificate;
    QSslKey key;
};

/// A temporary certificate authority and one certificate for all hosts. The `openssl` command line tool makes them in a
/// directory that is removed with this object.
class CertificateAuthority
{
public:
    /// Returns null, and prints a warning with the reason, when the tool is missing or fails.
    static std::unique_ptr<CertificateAuthority> make(const QStringList &hosts);

    /// PEM files: the authority's certificate (what a client trusts), and the hosts' certificate and key.
    QString authorityFile() const { return directory_.filePath(QStringLiteral("authority.pem")); }
    QString certificateFile() const { return directory_.filePath(QStringLiteral("hosts.pem")); }
    QString keyFile() const { return directory_.filePath(QStringLiteral("hosts.key")); }

    QSslCertificate certificate() const;
    QSslKey privateKey() const;
    /// The TLS configuration of a client that trusts only this authority.
    QSslConfiguration clientConfiguration() const;

    /// Issues another certificate. It expires in `days` days; -1 makes one that expired yesterday. Returns nullopt, and
    /// prints a warning with the reason, when the tool fails.
    std::optional<TlsIdentity> issue(const QStringList &hosts, int days = 2) const;
    /// Makes a certificate that is signed with its own key. Fails like `issue`.
    std::optional<TlsIdentity> selfSigned(const QStringList &hosts) const;

private:
    CertificateAuthority() = default;
    bool create(const QStringList &hosts) const;
    bool configure(const QStringList &hosts) const;
    bool issue(const QString &name, const QStringList &hosts, int days) const;
    bool sign(const QString &name, int days) const;
    bool selfSign(const QString &name, const QString &subject, const QString &extensions) const;
    TlsIdentity identity(const QString &name) const;
    bool openssl(const QStringList &arguments) const;

    QTemporaryDir directory_;
};

} // namespace kelvo
