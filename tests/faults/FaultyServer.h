#pragma once

#include "simulator/CertificateAuthority.h"

#include <QByteArray>
#include <QList>
#include <QTcpServer>

#include <chrono>
#include <functional>

namespace kelvo {

/// What happens to a connection after the bytes of an answer.
enum class Ending {
    stayOpen, ///< the connection stays open for another request
    close,    ///< it is closed after the last byte
    reset,    ///< it is reset, as by a server that crashes or a router that forgets it
};

/// The bytes that a server sends on a connection, whether they are HTTP or not.
struct Answer
{
    QByteArray bytes = {};             ///< sent at once
    QByteArray repeated = {};          ///< sent again and again after `bytes`; nothing when empty
    qint64 times = -1;                 ///< how often `repeated` is sent; -1: without end
    std::chrono::milliseconds pace{0}; ///< the time between two repetitions; 0: as fast as the client reads
    Ending ending = Ending::stayOpen;  ///< of an answer that has an end
};

/// A request as it arrived.
struct ReceivedRequest
{
    QByteArray method;
    QByteArray path;
};

/// How a server treats its clients.
struct Behaviour
{
    std::function<Answer(const ReceivedRequest &request)> answer;
    bool answersBeforeTls = false;       ///< sends the answer, without TLS, when a connection is accepted
    bool refusesConnections = false;     ///< does not listen
    bool wantsClientCertificate = false; ///< ends the TLS handshake of a client that shows no certificate
    TlsIdentity identity;
};

/// A TLS server on a port of 127.0.0.1 that sends any bytes. It stands for one host.
class FaultyServer : public QTcpServer
{
    Q_OBJECT

public:
    FaultyServer();

    quint16 port() const { return port_; }
    const Behaviour &behaviour() const { return behaviour_; }
    void setBehaviour(const Behaviour &behaviour);
    /// The requests since the last `setBehaviour`.
    const QList<ReceivedRequest> &requests() const { return requests_; }
    void receive(const ReceivedRequest &request) { requests_.append(request); }
    /// The number of open connections.
    int connectionsOpen() const { return static_cast<int>(connections_.children().size()); }

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    quint16 port_;
    Behaviour behaviour_;
    QList<ReceivedRequest> requests_;
    QObject connections_; ///< the parent of the connections
};

} // namespace kelvo
