#include "simulator/CertificateAuthority.h"

#include <QFile>
#include <QProcess>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

/// The configuration is complete, so the machine's own openssl.cnf has no effect.
QByteArray configurationFor(const QStringList &hosts)
{
    QStringList names;
    std::ranges::transform(hosts, std::back_inserter(names), [](const QString &host) { return u"DNS:"_s + host; });
    return "[req]\n"
           "distinguished_name = name\n"
           "prompt = no\n"
           "[name]\n"
           "commonName = Kelvo simulated internet\n"
           "[authority]\n"
           "basicConstraints = critical, CA:TRUE\n"
           "keyUsage = critical, keyCertSign, cRLSign\n"
           "subjectKeyIdentifier = hash\n"
           "[hosts]\n"
           "basicConstraints = critical, CA:FALSE\n"
           "keyUsage = critical, digitalSignature\n"
           "extendedKeyUsage = serverAuth\n"
           "authorityKeyIdentifier = keyid\n"
           "subjectAltName = "_ba
        + names.join(u',').toUtf8() + '\n';
}

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

std::unique_ptr<CertificateAuthority> CertificateAuthority::make(const QStringList &hosts)
{
    std::unique_ptr<CertificateAuthority> authority(new CertificateAuthority);
    return authority->create(hosts) ? std::move(authority) : nullptr;
}

QSslCertificate CertificateAuthority::certificate() const
{
    return QSslCertificate(contentsOf(certificateFile()));
}

QSslKey CertificateAuthority::privateKey() const
{
    return QSslKey(contentsOf(keyFile()), QSsl::Ec);
}

QSslConfiguration CertificateAuthority::clientConfiguration() const
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({QSslCertificate(contentsOf(authorityFile()))});
    return configuration;
}

bool CertificateAuthority::create(const QStringList &hosts) const
{
    QFile configuration(directory_.filePath(u"openssl.cnf"_s));
    if (!configuration.open(QIODevice::WriteOnly) || configuration.write(configurationFor(hosts)) < 0) {
        qWarning("Cannot write %ls", qUtf16Printable(configuration.fileName()));
        return false;
    }
    configuration.close();

    const QStringList newKey{u"-newkey"_s, u"ec"_s,      u"-pkeyopt"_s,   u"ec_paramgen_curve:prime256v1"_s,
                             u"-nodes"_s,  u"-config"_s, u"openssl.cnf"_s};
    return openssl(QStringList{u"req"_s, u"-x509"_s, u"-days"_s, u"2"_s, u"-extensions"_s, u"authority"_s} + newKey
                   + QStringList{u"-subj"_s, u"/CN=Kelvo simulated authority"_s, u"-keyout"_s, u"authority.key"_s,
                                 u"-out"_s, u"authority.pem"_s})
        && openssl(QStringList{u"req"_s, u"-new"_s} + newKey
                   + QStringList{u"-keyout"_s, u"hosts.key"_s, u"-out"_s, u"hosts.csr"_s})
        && openssl({u"x509"_s, u"-req"_s, u"-days"_s, u"2"_s, u"-in"_s, u"hosts.csr"_s, u"-CA"_s, u"authority.pem"_s,
                    u"-CAkey"_s, u"authority.key"_s, u"-CAcreateserial"_s, u"-extfile"_s, u"openssl.cnf"_s,
                    u"-extensions"_s, u"hosts"_s, u"-out"_s, u"hosts.pem"_s});
}

bool CertificateAuthority::openssl(const QStringList &arguments) const
{
    QProcess process;
    process.setWorkingDirectory(directory_.path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(u"openssl"_s, arguments);
    if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0) {
        return true;
    }
    qWarning("openssl %ls: %ls\n%s", qUtf16Printable(arguments.join(u' ')), qUtf16Printable(process.errorString()),
             process.readAll().constData());
    return false;
}

} // namespace kelvo
