#pragma once

#include "simulator/SimulatedRequest.h"

#include <chrono>

namespace kelvo {

/// The response of a simulated host to one request, and how it is sent.
struct SimulatedResponse
{
    enum class Behaviour {
        Answer,         ///< a whole, well-formed response
        CloseAtOnce,    ///< closes the connection without sending a byte
        CloseInMidBody, ///< announces the whole body, sends half of it and closes
        Drip,           ///< sends the body one byte per `pace`
        Silence,        ///< never sends a byte and keeps the connection open
        Stall,          ///< sends head and half of the body, then nothing, and keeps the connection open
        Endless,        ///< repeats the body without end
    };

    int status = 200;
    QByteArray body;
    QByteArray contentType = QByteArrayLiteral("text/html; charset=utf-8"); ///< none when empty
    QList<HttpHeader> headers;          ///< besides Content-Type, Content-Length and Connection
    std::chrono::milliseconds delay{0}; ///< before the first byte
    Behaviour behaviour = Behaviour::Answer;
    std::chrono::milliseconds pace{0}; ///< of `Drip`
    int provisional = 0;               ///< a 1xx status that is sent first, unless 0
    bool chunked = false;              ///< sends the body in chunks instead of announcing its length

    static SimulatedResponse json(const QByteArray &body, int status = 200);
    static SimulatedResponse html(const QByteArray &body, int status = 200);
    /// A response whose body is the reason phrase.
    static SimulatedResponse ofStatus(int status);
    static SimulatedResponse redirect(const QByteArray &location, int status = 302);
    static SimulatedResponse closeAtOnce();
    static SimulatedResponse truncated(const QByteArray &body, int status = 200);
    static SimulatedResponse drip(const QByteArray &body, std::chrono::milliseconds pace);
    static SimulatedResponse silence();
    static SimulatedResponse stall(const QByteArray &body);
    static SimulatedResponse endless(const QByteArray &piece);

    /// The same response with a compressed body and a Content-Encoding header.
    SimulatedResponse gzipped() const;
    SimulatedResponse with(const QByteArray &headerName, const QByteArray &value) const;
    SimulatedResponse after(std::chrono::milliseconds wait) const;
    SimulatedResponse afterProvisional(int provisionalStatus) const;
    SimulatedResponse inChunks() const;
};

/// Compresses `data` in the gzip format.
QByteArray gzip(const QByteArray &data);
/// The reason phrase of a status line.
QByteArray reasonPhrase(int status);

} // namespace kelvo
