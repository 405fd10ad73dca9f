#include "simulator/SimulatedResponse.h"

#include <QtEndian>

#include <array>

using namespace Qt::StringLiterals;

namespace kelvo {
namespace {

constexpr std::array<quint32, 256> makeCrcTable()
{
    std::array<quint32, 256> table{};
    for (quint32 index = 0; index < table.size(); ++index) {
        quint32 value = index;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value & 1) != 0 ? 0xEDB88320u ^ (value >> 1) : value >> 1;
        }
        table[index] = value;
    }
    return table;
}

quint32 crc32(const QByteArray &data)
{
    static constexpr auto table = makeCrcTable();
    quint32 crc = 0xFFFFFFFFu;
    for (const char byte : data) {
        crc = table[(crc ^ static_cast<quint8>(byte)) & 0xFF] ^ (crc >> 8);
    }
    return crc ^ 0xFFFFFFFFu;
}

QByteArray littleEndian(quint32 value)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToLittleEndian(value, bytes.data());
    return bytes;
}

} // namespace

QByteArray gzip(const QByteArray &data)
{
    // qCompress gives the length (4 bytes), a zlib header (2), the deflated data, and a checksum (4).
    const QByteArray deflated = qCompress(data).sliced(6).chopped(4);
    static const auto header = "\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\xff"_ba;
    return header + deflated + littleEndian(crc32(data)) + littleEndian(static_cast<quint32>(data.size()));
}

QByteArray reasonPhrase(int status)
{
    switch (status) {
    case 200: return "OK"_ba;
    case 204: return "No Content"_ba;
    case 301: return "Moved Permanently"_ba;
    case 302: return "Found"_ba;
    case 304: return "Not Modified"_ba;
    case 307: return "Temporary Redirect"_ba;
    case 308: return "Permanent Redirect"_ba;
    case 400: return "Bad Request"_ba;
    case 401: return "Unauthorized"_ba;
    case 403: return "Forbidden"_ba;
    case 404: return "Not Found"_ba;
    case 407: return "Proxy Authentication Required"_ba;
    case 429: return "Too Many Requests"_ba;
    case 500: return "Internal Server Error"_ba;
    case 502: return "Bad Gateway"_ba;
    case 503: return "Service Unavailable"_ba;
    default: return "Status"_ba;
    }
}

SimulatedResponse SimulatedResponse::json(const QByteArray &body, int status)
{
    SimulatedResponse response;
    response.status = status;
    response.body = body;
    response.contentType = "application/json; charset=utf-8"_ba;
    return response;
}

SimulatedResponse SimulatedResponse::html(const QByteArray &body, int status)
{
    SimulatedResponse response;
    response.status = status;
    response.body = body;
    return response;
}

SimulatedResponse SimulatedResponse::ofStatus(int status)
{
    return html("<!doctype html><title>"_ba + reasonPhrase(status) + "</title>"_ba, status);
}

SimulatedResponse SimulatedResponse::redirect(const QByteArray &location, int status)
{
    return ofStatus(status).with("Location"_ba, location);
}

SimulatedResponse SimulatedResponse::closeAtOnce()
{
    SimulatedResponse response;
    response.behaviour = Behaviour::CloseAtOnce;
    return response;
}

SimulatedResponse SimulatedResponse::truncated(const QByteArray &body, int status)
{
    SimulatedResponse response = json(body, status);
    response.behaviour = Behaviour::CloseInMidBody;
    return response;
}

SimulatedResponse SimulatedResponse::drip(const QByteArray &body, std::chrono::milliseconds pace)
{
    SimulatedResponse response = json(body);
    response.behaviour = Behaviour::Drip;
    response.pace = pace;
    return response;
}

SimulatedResponse SimulatedResponse::silence()
{
    SimulatedResponse response;
    response.behaviour = Behaviour::Silence;
    return response;
}

SimulatedResponse SimulatedResponse::stall(const QByteArray &body)
{
    SimulatedResponse response = json(body);
    response.behaviour = Behaviour::Stall;
    return response;
}

SimulatedResponse SimulatedResponse::endless(const QByteArray &piece)
{
    SimulatedResponse response = json(piece);
    response.behaviour = Behaviour::Endless;
    return response;
}

SimulatedResponse SimulatedResponse::gzipped() const
{
    SimulatedResponse response = with("Content-Encoding"_ba, "gzip"_ba);
    response.body = gzip(body);
    return response;
}

SimulatedResponse SimulatedResponse::with(const QByteArray &headerName, const QByteArray &value) const
{
    SimulatedResponse response = *this;
    response.headers.append({headerName, value});
    return response;
}

SimulatedResponse SimulatedResponse::after(std::chrono::milliseconds wait) const
{
    SimulatedResponse response = *this;
    response.delay = wait;
    return response;
}

SimulatedResponse SimulatedResponse::afterProvisional(int provisionalStatus) const
{
    SimulatedResponse response = *this;
    response.provisional = provisionalStatus;
    return response;
}

SimulatedResponse SimulatedResponse::inChunks() const
{
    SimulatedResponse response = *this;
    response.chunked = true;
    return response;
}

} // namespace kelvo
