#include "simulator/SimulatedConnection.h"

#include "simulator/SimulatedInternet.h"

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

constexpr qint64 highWater = 256 * 1024;
constexpr qsizetype largestRequest = 1024 * 1024;
constexpr auto httpsPort = ":443"_L1;

struct Authority
{
    QString host;
    bool isHttps;
};

Authority parseAuthority(const QByteArray &authority)
{
    const QString text = QString::fromLatin1(authority).toLower();
    return {text.section(u':', 0, 0), text.endsWith(httpsPort)};
}

} // namespace

SimulatedConnection::SimulatedConnection(qintptr descriptor, SimulatedInternet &internet)
    : QObject(&internet)
    , internet_(internet)
{
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&socket_, &QSslSocket::readyRead, this, &SimulatedConnection::readRequests);
    connect(&socket_, &QSslSocket::disconnected, this, &QObject::deleteLater);
    connect(&socket_, &QSslSocket::errorOccurred, this, &QObject::deleteLater);
    if (!socket_.setSocketDescriptor(descriptor)) {
        deleteLater();
        return;
    }
    socket_.setSocketOption(QAbstractSocket::LowDelayOption, 1);
}

void SimulatedConnection::closeIfIdle()
{
    if (!answering_) {
        socket_.abort();
        deleteLater();
    }
}

void SimulatedConnection::readRequests()
{
    received_ += socket_.readAll();
    if (received_.size() > largestRequest) {
        socket_.abort();
        return;
    }
    while (!answering_ && takeRequest()) { }
}

/// Removes one complete request from the received bytes and handles it. Returns false when there is none.
bool SimulatedConnection::takeRequest()
{
    const qsizetype headEnd = received_.indexOf("\r\n\r\n");
    if (headEnd < 0) {
        return false;
    }
    QList<QByteArray> lines = received_.first(headEnd).split('\n');
    const QList<QByteArray> requestLine = lines.takeFirst().trimmed().split(' ');
    SimulatedRequest request;
    for (const QByteArray &line : std::as_const(lines)) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0) {
            request.headers.append({line.first(colon).trimmed(), line.sliced(colon + 1).trimmed()});
        }
    }
    const qsizetype length = request.header("Content-Length"_ba).toLongLong();
    const qsizetype requestEnd = headEnd + 4 + length;
    if (requestLine.size() != 3 || length < 0) {
        socket_.abort();
        return false;
    }
    if (received_.size() < requestEnd) {
        return false;
    }
    request.method = requestLine.at(0);
    request.path = requestLine.at(1);
    request.body = received_.sliced(headEnd + 4, length);
    received_.remove(0, requestEnd);

    if (request.method == "CONNECT") {
        openTunnel(request.path);
    } else {
        accept(std::move(request));
    }
    return true;
}

void SimulatedConnection::openTunnel(const QByteArray &authority)
{
    const auto [host, isHttps] = parseAuthority(authority);
    const int status = internet_.tunnelStatus(host);
    if (status != 200 || !isHttps || internet_.certificate().isNull()) {
        const int refusal = status != 200 ? status : 502;
        socket_.write("HTTP/1.1 "_ba + QByteArray::number(refusal) + ' ' + reasonPhrase(refusal)
                      + (refusal == 407 ? "\r\nProxy-Authenticate: Basic realm=\"proxy\""_ba : ""_ba)
                      + "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"_ba);
        socket_.disconnectFromHost();
        return;
    }
    tunnelHost_ = host;
    socket_.write("HTTP/1.1 200 Connection established\r\n\r\n"_ba);
    socket_.flush();
    socket_.setLocalCertificate(internet_.certificate());
    socket_.setPrivateKey(internet_.privateKey());
    socket_.startServerEncryption();
}

void SimulatedConnection::accept(SimulatedRequest request)
{
    Authority authority = parseAuthority(request.header("Host"_ba));
    const qsizetype schemeEnd = request.path.indexOf("://");
    if (schemeEnd > 0 && !request.path.startsWith('/')) {
        const qsizetype pathStart = request.path.indexOf('/', schemeEnd + 3);
        const qsizetype authorityEnd = pathStart < 0 ? request.path.size() : pathStart;
        authority = parseAuthority(request.path.first(authorityEnd).sliced(schemeEnd + 3));
        request.path = pathStart < 0 ? "/"_ba : request.path.sliced(pathStart);
    }
    request.scheme = !tunnelHost_.isEmpty() || authority.isHttps ? u"https"_s : u"http"_s;
    request.host = tunnelHost_.isEmpty() ? authority.host : tunnelHost_;

    answering_ = true;
    sent_ = 0;
    response_ = internet_.receive(request);
    request_ = std::move(request);
    timer_.disconnect(this);
    connect(&timer_, &QTimer::timeout, this, &SimulatedConnection::answer);
    timer_.start(response_.delay);
}

void SimulatedConnection::answer()
{
    switch (response_.behaviour) {
    case SimulatedResponse::Behaviour::Answer: sendWhole(); break;
    case SimulatedResponse::Behaviour::CloseAtOnce: socket_.abort(); break;
    case SimulatedResponse::Behaviour::CloseInMidBody:
        sendHalf();
        socket_.disconnectFromHost();
        break;
    case SimulatedResponse::Behaviour::Drip:
        sendHead("Content-Length: "_ba + QByteArray::number(response_.body.size()));
        timer_.disconnect(this);
        connect(&timer_, &QTimer::timeout, this, &SimulatedConnection::dripOn);
        timer_.start(response_.pace);
        break;
    case SimulatedResponse::Behaviour::Silence: break;
    case SimulatedResponse::Behaviour::Stall: sendHalf(); break;
    case SimulatedResponse::Behaviour::Endless:
        sendHead("Connection: close"_ba);
        connect(&socket_, &QSslSocket::bytesWritten, this, &SimulatedConnection::pourOn);
        connect(&socket_, &QSslSocket::encryptedBytesWritten, this, &SimulatedConnection::pourOn);
        pourOn();
        break;
    }
}

void SimulatedConnection::sendHead(const QByteArray &framing)
{
    if (response_.provisional != 0) {
        socket_.write("HTTP/1.1 "_ba + QByteArray::number(response_.provisional) + " Provisional\r\n\r\n"_ba);
    }
    QByteArray head = "HTTP/1.1 "_ba + QByteArray::number(response_.status) + ' ' + reasonPhrase(response_.status)
        + "\r\nDate: Thu, 01 Jan 2026 00:00:00 GMT\r\n"_ba;
    if (!response_.contentType.isEmpty()) {
        head += "Content-Type: "_ba + response_.contentType + "\r\n"_ba;
    }
    for (const HttpHeader &header : std::as_const(response_.headers)) {
        head += header.name + ": "_ba + header.value + "\r\n"_ba;
    }
    if (!framing.isEmpty()) {
        head += framing + "\r\n"_ba;
    }
    socket_.write(head + "\r\n"_ba);
}

void SimulatedConnection::sendWhole()
{
    const bool hasBody = response_.status >= 200 && response_.status != 204 && response_.status != 304;
    QByteArray framing;
    if (hasBody) {
        framing = response_.chunked ? "Transfer-Encoding: chunked"_ba
                                    : "Content-Length: "_ba + QByteArray::number(response_.body.size());
    }
    if (!internet_.keepsConnections()) {
        framing += (framing.isEmpty() ? ""_ba : "\r\n"_ba) + "Connection: close"_ba;
    }
    sendHead(framing);
    if (hasBody && request_.method != "HEAD") {
        socket_.write(bodyPart(0, response_.body.size()));
        if (response_.chunked) {
            socket_.write("0\r\n\r\n"_ba);
        }
    }
    endAnswer();
}

void SimulatedConnection::sendHalf()
{
    sendHead(response_.chunked ? "Transfer-Encoding: chunked"_ba
                               : "Content-Length: "_ba + QByteArray::number(response_.body.size()));
    socket_.write(bodyPart(0, response_.body.size() / 2));
}

void SimulatedConnection::dripOn()
{
    socket_.write(response_.body.sliced(sent_, 1));
    ++sent_;
    if (sent_ < response_.body.size()) {
        timer_.start(response_.pace);
    } else {
        endAnswer();
    }
}

void SimulatedConnection::pourOn()
{
    while (socket_.isOpen() && socket_.bytesToWrite() + socket_.encryptedBytesToWrite() < highWater) {
        if (socket_.write(response_.body) <= 0) {
            return;
        }
    }
}

void SimulatedConnection::endAnswer()
{
    answering_ = false;
    if (!internet_.keepsConnections()) {
        socket_.disconnectFromHost();
    } else if (!received_.isEmpty()) {
        QMetaObject::invokeMethod(this, &SimulatedConnection::readRequests, Qt::QueuedConnection);
    }
}

QByteArray SimulatedConnection::bodyPart(qsizetype from, qsizetype length) const
{
    const QByteArray part = response_.body.sliced(from, length);
    if (!response_.chunked || part.isEmpty()) {
        return part;
    }
    return QByteArray::number(part.size(), 16) + "\r\n"_ba + part + "\r\n"_ba;
}

} // namespace kelvo
