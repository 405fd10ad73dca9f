#pragma once

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace kelvo {

/// A certificate authority for one run, with one certificate for all hosts, made by the `openssl` command line tool in a
/// directory that goes with it.
class CertificateAuthority
{
public:
    /// Null, with a warning that says why, when the tool is missing or fails.
    static std::unique_ptr<CertificateAuthority> make(const QStringList &hosts);

    /// PEM files: the authority's certificate (what a client trusts), and the hosts' certificate and key.
    QString authorityFile() const { return directory_.filePath(QStringLiteral("authority.pem")); }
    QString certificateFile() const { return directory_.filePath(QStringLiteral("hosts.pem")); }
    QString keyFile() const { return directory_.filePath(QStringLiteral("hosts.key")); }

    QSslCertificate certificate() const;
    QSslKey privateKey() const;
    /// For a client that trusts this authority and nobody else.
    QSslConfiguration clientConfiguration() const;

private:
    CertificateAuthority() = default;
    bool create(const QStringList &hosts) const;
    bool openssl(const QStringList &arguments) const;

    QTemporaryDir directory_;
};

} // namespace kelvo
