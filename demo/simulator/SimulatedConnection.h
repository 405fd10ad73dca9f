#pragma once

#include "simulator/SimulatedResponse.h"

#include <QObject>
#include <QSslSocket>
#include <QTimer>

namespace kelvo {

class SimulatedInternet;

/// One client's connection: an HTTP/1.1 server that is also a proxy, so that it plays any host. Answers one request
/// after the other and goes when the client goes.
class SimulatedConnection : public QObject
{
    Q_OBJECT

public:
    SimulatedConnection(qintptr descriptor, SimulatedInternet &internet);

    /// Drops the connection if nothing is being answered on it.
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
    QTimer timer_; // the one thing that an answer waits for: its delay, or the next drop
    QByteArray received_;
    QString tunnelHost_;
    SimulatedRequest request_;
    SimulatedResponse response_;
    qsizetype sent_ = 0;
    bool answering_ = false;
};

} // namespace kelvo
