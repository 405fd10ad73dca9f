#include "FaultyServer.h"

#include <QSslSocket>
#include <QTimer>

#include <sys/socket.h>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// The unsent bytes up to which a server that sends without a pause continues.
constexpr qint64 highWater = 128 * 1024;
constexpr qint64 largeWrite = 32 * 1024;
/// The time that the client has to read what it was sent before a reset discards it.
constexpr auto timeBeforeReset = 20ms;

class Connection : public QObject
{
public:
    Connection(qintptr descriptor, FaultyServer &server, QObject &parent);

private:
    void readRequests();
    bool takeRequest();
    void send(const Answer &answer);
    void repeat();
    void end();

    FaultyServer &server_;
    Behaviour behaviour_;
    QByteArray received_;
    Answer answer_;
    QTimer timer_;
    QSslSocket socket_; ///< declared last: its destructor may emit signals
};

Connection::Connection(qintptr descriptor, FaultyServer &server, QObject &parent)
    : QObject(&parent)
    , server_(server)
    , behaviour_(server.behaviour())
{
    connect(&socket_, &QSslSocket::readyRead, this, &Connection::readRequests);
    connect(&socket_, &QSslSocket::disconnected, this, &QObject::deleteLater);
    connect(&socket_, &QSslSocket::errorOccurred, this, &QObject::deleteLater);
    connect(&timer_, &QTimer::timeout, this, &Connection::repeat);
    socket_.setSocketDescriptor(descriptor);
    socket_.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    if (behaviour_.answersBeforeTls) {
        send(behaviour_.answer({}));
        return;
    }
    socket_.setLocalCertificate(behaviour_.identity.certificate);
    socket_.setPrivateKey(behaviour_.identity.key);
    if (behaviour_.wantsClientCertificate) {
        socket_.setPeerVerifyMode(QSslSocket::VerifyPeer);
    }
    socket_.startServerEncryption();
}

void Connection::readRequests()
{
    const auto bytes = socket_.readAll();
    if (behaviour_.answersBeforeTls) {
        return;
    }
    received_ += bytes;
    while (takeRequest()) { }
}

/// Removes a complete request from the received bytes and answers it. Returns false when there is none.
bool Connection::takeRequest()
{
    const auto headEnd = received_.indexOf("\r\n\r\n");
    if (headEnd < 0) {
        return false;
    }
    const auto head = received_.first(headEnd);
    const auto field = head.toLower().indexOf("\r\ncontent-length:");
    const auto length = field < 0 ? 0 : head.mid(field + 17).split('\r').constFirst().trimmed().toLongLong();
    if (received_.size() < headEnd + 4 + length) {
        return false;
    }
    received_.remove(0, headEnd + 4 + length);
    const auto words = head.split(' ');
    const ReceivedRequest request{words.value(0), words.value(1)};
    server_.receive(request);
    send(behaviour_.answer(request));
    return true;
}

void Connection::send(const Answer &answer)
{
    answer_ = answer;
    socket_.write(answer.bytes);
    socket_.flush();
    if (answer.repeated.isEmpty()) {
        end();
    } else if (answer.pace > 0ms) {
        timer_.start(answer.pace);
    } else {
        connect(&socket_, &QSslSocket::bytesWritten, this, &Connection::repeat);
        connect(&socket_, &QSslSocket::encryptedBytesWritten, this, &Connection::repeat);
        repeat();
    }
}

void Connection::repeat()
{
    if (answer_.pace > 0ms) {
        socket_.write(answer_.repeated);
        return;
    }
    // Large writes, because a piece may be a single byte.
    const auto most = 1 + largeWrite / answer_.repeated.size();
    while (answer_.times != 0 && socket_.state() == QSslSocket::ConnectedState
           && socket_.bytesToWrite() + socket_.encryptedBytesToWrite() < highWater) {
        const auto count = answer_.times < 0 ? most : std::min<qint64>(most, answer_.times);
        answer_.times -= answer_.times < 0 ? 0 : count;
        socket_.write(answer_.repeated.repeated(count));
        if (answer_.times == 0) {
            end();
        }
    }
}

void Connection::end()
{
    switch (answer_.ending) {
    case Ending::stayOpen: break;
    case Ending::close: socket_.disconnectFromHost(); break;
    case Ending::reset:
        QTimer::singleShot(answer_.bytes.isEmpty() ? 0ms : timeBeforeReset, this, [this] {
            const ::linger discard{.l_onoff = 1, .l_linger = 0};
            ::setsockopt(static_cast<int>(socket_.socketDescriptor()), SOL_SOCKET, SO_LINGER, &discard, sizeof discard);
            socket_.abort();
            deleteLater();
        });
        break;
    }
}

} // namespace

FaultyServer::FaultyServer()
{
    if (!listen(QHostAddress::LocalHost)) {
        qFatal("cannot listen on 127.0.0.1");
    }
    port_ = serverPort();
}

void FaultyServer::setBehaviour(const Behaviour &behaviour)
{
    behaviour_ = behaviour;
    requests_.clear();
    if (behaviour.refusesConnections) {
        close();
    } else if (!isListening() && !listen(QHostAddress::LocalHost, port_)) {
        qFatal("cannot listen on port %d again", port_);
    }
}

void FaultyServer::incomingConnection(qintptr descriptor)
{
    new Connection(descriptor, *this, connections_);
}

} // namespace kelvo
