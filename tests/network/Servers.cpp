#include "Servers.h"

#include "Defect.h"

#include "simulator/StatusPageDocument.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const QStringList hosts{u"status.claude.com"_s, u"claude.ai"_s, u"api.telegram.org"_s, u"hooks.slack.com"_s};

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

Servers::Servers(const Network &network)
    : network_(network)
    , authority_(CertificateAuthority::make(hosts))
    , portalAuthority_(CertificateAuthority::make(hosts))
{
    if (!authority_ || !portalAuthority_) {
        throw Defect{u"no certificates"_s};
    }
    for (const auto *folder : {"trusted", "www/status.claude.com/api/v2", "script", "state"}) {
        QDir(directory_.path()).mkpath(QLatin1StringView(folder));
    }
    QFile::copy(authority_->authorityFile(), file(u"trusted/authority.pem"_s));
    network_.internet().run(u"openssl rehash %1"_s.arg(trusted()));
    writePage();
    tellResolver(true);
}

Servers::~Servers()
{
    for (const auto &[name, process] : processes_) {
        process->kill();
        process->waitForFinished();
    }
}

void Servers::startWeb()
{
    auto configuration = QString::fromUtf8(R"(
user root root;
daemon off;
master_process off;
pid @/nginx.pid;
error_log @/web.err;
events { worker_connections 512; }
http {
    log_format seen '$msec|$server_protocol|$host|$request_method|$uri|$status|$body_bytes_sent';
    access_log @/seen.log seen;
    client_body_temp_path @/state; proxy_temp_path @/state; fastcgi_temp_path @/state;
    uwsgi_temp_path @/state; scgi_temp_path @/state;
    keepalive_timeout @keepalive;
    ssl_certificate @certificate;
    ssl_certificate_key @key;
    server {
        server_name status.claude.com;
        listen @web:443 ssl http2;
        listen [@ipv6]:443 ssl http2;
        listen @inner:8443 ssl http2;
        root @/www/status.claude.com;
        default_type application/json;
    }
    server {
        server_name claude.ai;
        listen @web:443 ssl http2;
        listen [@ipv6]:443 ssl http2;
        listen @inner:8443 ssl http2;
        location / {
            if (-f @/state/claude-is-down) { return 503; }
            return 200 "Hello";
        }
    }
    server {
        server_name api.telegram.org hooks.slack.com;
        listen @web:443 ssl http2;
        location / { return 200 "ok"; }
    }
    server {
        server_name script;
        listen @web:80;
        root @/script;
        default_type application/x-ns-proxy-autoconfig;
    }
    server {
        server_name portal;
        listen @portal:80;
        listen @portal:443 ssl;
        ssl_certificate @portalcertificate;
        ssl_certificate_key @portalkey;
        location / { return 302 http://@portal/welcome; }
    }
}
)");
    const QList<QPair<QString, QString>> values{
        {u"@keepalive"_s, QString::number(keepAlive_)},
        {u"@certificate"_s, authority_->certificateFile()},
        {u"@key"_s, authority_->keyFile()},
        {u"@portalcertificate"_s, portalAuthority_->certificateFile()},
        {u"@portalkey"_s, portalAuthority_->keyFile()},
        {u"@portal"_s, QLatin1StringView(Network::portal)},
        {u"@web"_s, QLatin1StringView(Network::web)},
        {u"@ipv6"_s, QLatin1StringView(Network::webIPv6)},
        {u"@inner"_s, u"127.0.0.1"_s},
        {u"@/"_s, directory_.path() + u'/'},
    };
    for (const auto &[name, value] : values) {
        configuration.replace(name, value);
    }
    write(u"nginx.conf"_s, configuration.toUtf8());
    start(u"web"_s,
          {u"nginx"_s, u"-p"_s, directory_.path(), u"-e"_s, file(u"web.err"_s), u"-c"_s, file(u"nginx.conf"_s)});
    awaitPort(u"web"_s, Network::web, 443);
}

void Servers::setClaudeIsDown(bool down)
{
    claudeIsDown_ = down;
    writePage();
    if (down) {
        write(u"state/claude-is-down"_s, {});
    } else {
        QFile::remove(file(u"state/claude-is-down"_s));
    }
}

void Servers::setPageSize(qint64 bytes)
{
    pageSize_ = bytes;
    writePage();
}

QList<SeenRequest> Servers::seen(const QByteArray &host) const
{
    QList<SeenRequest> requests;
    for (const auto &line : contentsOf(file(u"seen.log"_s)).split('\n')) {
        const auto values = line.split('|');
        if (values.size() == 7 && values[2] == host) {
            requests.append({values[0].toDouble(), values[1], values[2], values[3], values[4], values[5].toInt(),
                             values[6].toLongLong()});
        }
    }
    return requests;
}

void Servers::startNames(Names names)
{
    stopNames();
    auto configuration = "no-resolv\nno-hosts\nno-daemon\nuser=root\nbind-interfaces\nlisten-address="_ba
        + Network::resolver + "\npid-file=\n";
    const auto all = [](const QByteArray &addresses) {
        QByteArray records;
        for (const auto &host : hosts) {
            records += "host-record=" + host.toUtf8() + ',' + addresses + '\n';
        }
        return records;
    };
    const auto known = "local=/com/ai/org/\n"_ba;
    switch (names) {
    case Names::Right: configuration += known + all(Network::web); break;
    case Names::RightWithIPv6: configuration += known + all(Network::web + ","_ba + Network::webIPv6); break;
    case Names::ToBalancer: configuration += known + all(Network::balancer); break;
    case Names::ToPortal: configuration += "filter-AAAA\naddress=/#/"_ba + Network::portal + '\n'; break;
    case Names::NoSuchName: configuration += "address=/#/\n"; break;
    case Names::ServerFailure:
        // A zone that should be signed with DNSSEC but is not.
        write(u"unsigned.conf"_s,
              "no-resolv\nno-hosts\nno-daemon\nuser=root\nbind-interfaces\nlisten-address=127.0.0.1\nport=5353\n"
              "pid-file=\n"
                  + known + all(Network::web));
        start(u"unsigned names"_s, {u"dnsmasq"_s, u"-C"_s, file(u"unsigned.conf"_s)});
        configuration += "server=127.0.0.1#5353\ndnssec\ndnssec-check-unsigned\n"
                         "trust-anchor=.,20326,8,2,E06D44B80B8F1D39A95C0B0D7C65D08458E880409BBC683457104237C7F8EC8D\n";
        break;
    }
    write(u"names.conf"_s, configuration);
    start(u"names"_s, {u"dnsmasq"_s, u"-C"_s, file(u"names.conf"_s)});
    awaitPort(u"names"_s, Network::resolver, 53);
}

void Servers::stopNames()
{
    stop(u"names"_s);
    stop(u"unsigned names"_s);
}

void Servers::tellResolver(bool known) const
{
    QFile target(resolverFile());
    const auto content = known ? "nameserver "_ba + Network::resolver + '\n' : "# none yet\n"_ba;
    if (!target.open(QIODevice::WriteOnly) || target.write(content) != content.size()) {
        throw Defect{u"cannot write resolv.conf"_s};
    }
}

void Servers::startBalancer()
{
    write(u"balancer.cfg"_s,
          "defaults\n"
          "  mode tcp\n"
          "  retries 0\n"
          "  timeout connect 1h\n  timeout client 1h\n  timeout server 1h\n  timeout tunnel 1h\n"
          "listen web\n"
          "  bind "_ba
              + Network::balancer
              + ":443\n"
                "  server behind 127.0.0.1:8443\n");
    start(u"balancer"_s, {u"haproxy"_s, u"-db"_s, u"-f"_s, file(u"balancer.cfg"_s)});
    awaitPort(u"balancer"_s, Network::balancer, 443);
}

void Servers::startProxy(quint16 port, const QString &credentials)
{
    const auto name = u"proxy-%1"_s.arg(port);
    auto configuration = u"Port %1\nListen %2\nTimeout 3600\nLogLevel Connect\nLogFile \"%3\"\nMaxClients 100\n"
                         "Allow 10.0.0.0/8\nConnectPort 443\n"_s.arg(port)
                             .arg(QLatin1StringView(Network::proxy), file(name + u".log"_s));
    if (!credentials.isEmpty()) {
        configuration += u"BasicAuth %1 %2\n"_s.arg(credentials.section(u':', 0, 0), credentials.section(u':', 1));
    }
    write(name + u".conf"_s, configuration.toUtf8());
    start(name, {u"tinyproxy"_s, u"-d"_s, u"-c"_s, file(name + u".conf"_s)});
    awaitPort(name, Network::proxy, port);
}

void Servers::killProxy(quint16 port)
{
    stop(u"proxy-%1"_s.arg(port));
}

void Servers::freezeProxy(bool frozen, quint16 port)
{
    ::kill(static_cast<pid_t>(processes_.at(u"proxy-%1"_s.arg(port))->processId()), frozen ? SIGSTOP : SIGCONT);
}

QList<QByteArray> Servers::proxied(quint16 port) const
{
    static const QRegularExpression connect(u"Request \\(file descriptor \\d+\\): CONNECT (\\S+)"_s);
    QList<QByteArray> targets;
    auto matches = connect.globalMatch(QString::fromUtf8(contentsOf(file(u"proxy-%1.log"_s.arg(port)))));
    while (matches.hasNext()) {
        targets.append(matches.next().captured(1).toUtf8());
    }
    return targets;
}

QString Servers::publishScript(const QByteArray &script)
{
    write(u"script/proxy.pac"_s, script);
    return file(u"script/proxy.pac"_s);
}

void Servers::startScriptServer(std::chrono::seconds delay)
{
    write(u"slow.cfg"_s,
          "defaults\n"
          "  mode tcp\n"
          "  timeout connect 1h\n  timeout client 1h\n  timeout server 1h\n"
          "listen script\n"
          "  bind "_ba
              + Network::balancer + ":8080\n  tcp-request inspect-delay " + QByteArray::number(qint64(delay.count()))
              + "s\n  tcp-request content accept if WAIT_END\n  server behind " + Network::web + ":80\n");
    start(u"slow"_s, {u"haproxy"_s, u"-db"_s, u"-f"_s, file(u"slow.cfg"_s)});
    awaitPort(u"slow"_s, Network::balancer, 8080);
}

void Servers::write(const QString &name, const QByteArray &content) const
{
    QSaveFile target(file(name));
    if (!target.open(QIODevice::WriteOnly) || target.write(content) != content.size() || !target.commit()) {
        throw Defect{u"cannot write "_s + name};
    }
}

void Servers::start(const QString &name, const QStringList &command)
{
    auto &process = processes_[name];
    process = std::make_unique<QProcess>();
    network_.internet().adopt(*process);
    process->setStandardOutputFile(file(name + u".out"_s));
    process->setStandardErrorFile(file(name + u".err"_s));
    process->start(command.first(), command.mid(1));
    if (!process->waitForStarted()) {
        throw Defect{command.first() + u" does not start: "_s + process->errorString()};
    }
}

void Servers::stop(const QString &name)
{
    const auto found = processes_.find(name);
    if (found != processes_.end()) {
        found->second->kill();
        found->second->waitForFinished();
        processes_.erase(found);
    }
}

void Servers::awaitPort(const QString &name, const char *address, quint16 port) const
{
    const auto question =
        u"ss --no-header --tcp --listening --numeric src %1:%2"_s.arg(QLatin1StringView(address)).arg(port);
    if (!QTest::qWaitFor([&] { return !network_.internet().ask(question).isEmpty(); }, 20'000)) {
        throw Defect{u"%1 listens not at %2:%3: "_s.arg(name, QLatin1StringView(address)).arg(port)
                     + QString::fromUtf8(contentsOf(file(name + u".err"_s)).trimmed())};
    }
}

void Servers::writePage()
{
    auto page = StatusPageDocument::claude();
    if (claudeIsDown_) {
        page.setComponent(u"claude.ai"_s, u"major_outage"_s);
        page.setIndicator(u"critical"_s);
    }
    auto json = page.toJson().trimmed();
    if (pageSize_ > json.size()) {
        // Add an unused list that fills the page up to the size.
        json.chop(1);
        json += ",\"history\":[";
        const auto entry =
            R"({"id":"4f1c9","name":"Elevated errors","status":"resolved","impact":"minor","count":17},)"_ba;
        json.reserve(pageSize_ + entry.size());
        while (json.size() < pageSize_) {
            json += entry;
        }
        json.chop(1);
        json += "]}";
    }
    write(u"www/status.claude.com/api/v2/summary.json"_s, json);
}

} // namespace kelvo
