#pragma once

#include "simulator/SimulatedResponse.h"

#include <QObject>
#include <QSslSocket>
#include <QTimer>

namespace kelvo {

class SimulatedInternet;

/// The server side of one connection: an HTTP/1.1 server and proxy that stands in for any host. It answers one request
/// after the other and deletes itself when the client disconnects.
class SimulatedConnection : public QObject
{
    Q_OBJECT

public:
    SimulatedConnection(qintptr descriptor, SimulatedInternet &internet);

    /// Closes the connection unless it is answering a request.
    void closeIfIdle();

private:
    void readRequests();
    bool takeRequest();
    void openTunnel(const QByteArray &authority);
    void accept(SimulatedRequest request);
    void answer();
    void sendHead(const QByteArray &framing);
    void sendWhole();
    void sendHalf();
    void dripOn();
    void pourOn();
    void endAnswer();
    QByteArray bodyPart(qsizetype from, qsizetype length) const;

    SimulatedInternet &internet_;
    QSslSocket socket_;
    QTimer timer_; // the delay before the answer, or the wait before its next byte
    QByteArray received_;
    QString tunnelHost_;
    SimulatedRequest request_;
    SimulatedResponse response_;
    qsizetype sent_ = 0;
    bool answering_ = false;
};

} // namespace kelvo
