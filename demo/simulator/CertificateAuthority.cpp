#include "simulator/CertificateAuthority.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

/// Options of `openssl req` for a new key.
const QStringList newKey{u"-newkey"_s, u"ec"_s,      u"-pkeyopt"_s,   u"ec_paramgen_curve:prime256v1"_s,
                         u"-nodes"_s,  u"-config"_s, u"openssl.cnf"_s};

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
           "[ca]\n"
           "default_ca = signing\n"
           "[signing]\n"
           "database = issued.txt\n"
           "default_md = sha256\n"
           "new_certs_dir = .\n"
           "policy = anyone\n"
           "serial = serial.txt\n"
           "[anyone]\n"
           "commonName = supplied\n"
           "[authority]\n"
           "basicConstraints = critical, CA:TRUE\n"
           "keyUsage = critical, keyCertSign, cRLSign\n"
           "subjectKeyIdentifier = hash\n"
           "[host]\n"
           "basicConstraints = critical, CA:FALSE\n"
           "keyUsage = critical, digitalSignature\n"
           "extendedKeyUsage = serverAuth\n"
           "subjectKeyIdentifier = hash\n"
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
    return identity(u"hosts"_s).certificate;
}

QSslKey CertificateAuthority::privateKey() const
{
    return identity(u"hosts"_s).key;
}

QSslConfiguration CertificateAuthority::clientConfiguration() const
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({QSslCertificate(contentsOf(authorityFile()))});
    return configuration;
}

std::optional<TlsIdentity> CertificateAuthority::issue(const QStringList &hosts, int days) const
{
    return issue(u"other"_s, hosts, days) ? std::optional(identity(u"other"_s)) : std::nullopt;
}

std::optional<TlsIdentity> CertificateAuthority::selfSigned(const QStringList &hosts) const
{
    return configure(hosts) && selfSign(u"other"_s, u"Kelvo simulated host"_s, u"host"_s)
        ? std::optional(identity(u"other"_s))
        : std::nullopt;
}

bool CertificateAuthority::create(const QStringList &hosts) const
{
    return configure(hosts) && selfSign(u"authority"_s, u"Kelvo simulated authority"_s, u"authority"_s)
        && issue(u"hosts"_s, hosts, 2);
}

bool CertificateAuthority::configure(const QStringList &hosts) const
{
    QFile configuration(directory_.filePath(u"openssl.cnf"_s));
    if (!configuration.open(QIODevice::WriteOnly) || configuration.write(configurationFor(hosts)) < 0) {
        qWarning("Cannot write %ls", qUtf16Printable(configuration.fileName()));
        return false;
    }
    return true;
}

bool CertificateAuthority::issue(const QString &name, const QStringList &hosts, int days) const
{
    return configure(hosts)
        && openssl(QStringList{u"req"_s, u"-new"_s} + newKey
                   + QStringList{u"-keyout"_s, name + u".key"_s, u"-out"_s, name + u".csr"_s})
        && sign(name, days);
}

/// Uses `openssl ca`, because `openssl x509` makes no certificate that has expired (seen with OpenSSL 3.5).
bool CertificateAuthority::sign(const QString &name, int days) const
{
    const auto now = QDateTime::currentDateTimeUtc();
    const auto end = now.addDays(days);
    const auto start = std::min(now, end).addDays(-1);
    const auto written = [](const QDateTime &time) { return time.toString(u"yyyyMMddHHmmss'Z'"_s); };
    QFile issued(directory_.filePath(u"issued.txt"_s));
    return issued.open(QIODevice::WriteOnly)
        && openssl({u"ca"_s,          u"-batch"_s,         u"-notext"_s,     u"-config"_s,
                    u"openssl.cnf"_s, u"-create_serial"_s, u"-cert"_s,       u"authority.pem"_s,
                    u"-keyfile"_s,    u"authority.key"_s,  u"-extensions"_s, u"host"_s,
                    u"-startdate"_s,  written(start),      u"-enddate"_s,    written(end),
                    u"-in"_s,         name + u".csr"_s,    u"-out"_s,        name + u".pem"_s});
}

bool CertificateAuthority::selfSign(const QString &name, const QString &subject, const QString &extensions) const
{
    return openssl(
        QStringList{u"req"_s, u"-x509"_s, u"-days"_s, u"2"_s, u"-extensions"_s, extensions} + newKey
        + QStringList{u"-subj"_s, u"/CN="_s + subject, u"-keyout"_s, name + u".key"_s, u"-out"_s, name + u".pem"_s});
}

TlsIdentity CertificateAuthority::identity(const QString &name) const
{
    return {QSslCertificate(contentsOf(directory_.filePath(name + u".pem"_s))),
            QSslKey(contentsOf(directory_.filePath(name + u".key"_s)), QSsl::Ec)};
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
