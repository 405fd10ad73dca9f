#include "Fault.h"

#include "simulator/SimulatedResponse.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QStringEncoder>
#include <QVersionNumber>

namespace kelvo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Request = FaultyRequest;

// ---- Outcomes ----

/// The exchange succeeds, because the answer is complete in spite of the fault.
constexpr Outcome harmless{Reading::taken, Reading::taken, Use::yes, Delivery::delivered};
/// The exchange fails.
constexpr Outcome broken{Reading::none, Reading::none, Use::no, Delivery::failed};
/// The server answers, but the document cannot be read.
constexpr Outcome unreadable{Reading::none, Reading::none, Use::yes, Delivery::delivered};
/// The same with a status from 300 to 499.
constexpr Outcome refused{Reading::none, Reading::none, Use::yes, Delivery::failed};

/// Qt 6.4 takes a provisional response other than 100 for the answer. Qt 6.8 waits for the answer behind it.
const bool waitsForTheAnswer = QLibraryInfo::version() >= QVersionNumber(6, 8);

// ---- Answers ----

QByteArray head(const QByteArray &status, const QList<QByteArray> &fields)
{
    QByteArray lines = "HTTP/1.1 " + status + "\r\n";
    for (const auto &field : fields) {
        lines += field + "\r\n";
    }
    return lines + "\r\n";
}

QByteArray lengthOf(const QByteArray &body)
{
    return "Content-Length: " + QByteArray::number(body.size());
}

/// A complete response with a Content-Length.
Answer response(const QByteArray &status, const QByteArray &body, QList<QByteArray> fields = {})
{
    fields.prepend(lengthOf(body));
    return {.bytes = head(status, fields) + body};
}

/// Just these bytes, and then the end of the connection.
Answer closing(const QByteArray &bytes)
{
    return {.bytes = bytes, .ending = Ending::close};
}

Answer resetting(const QByteArray &bytes)
{
    return {.bytes = bytes, .ending = Ending::reset};
}

/// `body` in one chunk and the last chunk.
QByteArray chunks(const QByteArray &body)
{
    return QByteArray::number(body.size(), 16) + "\r\n" + body + "\r\n0\r\n\r\n";
}

constexpr auto chunked = "Transfer-Encoding: chunked";
constexpr auto json = "Content-Type: application/json";
constexpr auto gzipped = "Content-Encoding: gzip";

/// These bytes and then `repeated`, as fast as the client reads.
Answer pouring(const QByteArray &bytes, const QByteArray &repeated)
{
    return {.bytes = bytes, .repeated = repeated};
}

/// These bytes and then `repeated` several times within the idle timeout.
Answer dripping(const QByteArray &bytes, const QByteArray &repeated)
{
    return {.bytes = bytes, .repeated = repeated, .pace = 100ms};
}

QByteArray errorPage(const QByteArray &text)
{
    return "<!DOCTYPE html><html><head><title>" + text + "</title></head><body><h1>" + text + "</h1></body></html>";
}

// ---- Redirects ----

Answer redirect(const QByteArray &status, const QByteArray &location)
{
    return response(status, {}, {"Location: " + location});
}

/// A chain of `length` redirects that ends with the document.
Answer redirectChain(const Request &request, int length)
{
    const auto step = request.path.mid(request.path.lastIndexOf('=') + 1).toInt();
    return step < length ? redirect("302 Found", "/?step=" + QByteArray::number(step + 1))
                         : goodAnswer(request.document);
}

// ---- TLS records ----

/// A ServerHello that chooses a version of TLS and a cipher.
QByteArray serverHello(char minorVersion, const QByteArray &cipher)
{
    const QByteArray body = QByteArray("\x03") + minorVersion + QByteArray(32, 'r') + QByteArray(1, '\0') + cipher
        + QByteArray(1, '\0');
    const auto size = static_cast<char>(body.size());
    const QByteArray message = QByteArray("\x02\0\0", 3) + size + body;
    return QByteArray("\x16\x03") + minorVersion + QByteArray(1, '\0') + static_cast<char>(message.size()) + message;
}

// ---- Compression ----

/// A deflate block that decompresses to a multiple of its size and ends at a byte boundary, so that it may be repeated.
/// Each of its parts repeats the previous byte 258 times and adds `literals` spaces.
QByteArray bombBlock(int literals)
{
    QByteArray bytes;
    int bits = 0;
    int count = 0;
    const auto put = [&](unsigned value, int size) {
        for (int i = 0; i < size; ++i) {
            bits |= static_cast<int>((value >> i) & 1U) << count;
            if (++count == 8) {
                bytes.append(static_cast<char>(bits));
                bits = count = 0;
            }
        }
    };
    // Huffman codes begin with their most significant bit.
    const auto putCode = [&](unsigned code, int size) {
        for (int i = size - 1; i >= 0; --i) {
            put((code >> i) & 1U, 1);
        }
    };
    const auto putSpace = [&] { putCode(0x30 + ' ', 8); };
    put(0, 1); // not the last block
    put(1, 2); // fixed Huffman codes
    putSpace();
    for (int parts = 0; parts < 8192 || (count + 7) % 8 != 0; ++parts) {
        putCode(0b11000101, 8); // length 258
        putCode(0, 5);          // distance 1
        for (int i = 0; i < literals; ++i) {
            putSpace();
        }
    }
    putCode(0, 7); // the end of the block
    return bytes;
}

/// A gzip stream that begins with `text` and never ends.
Answer bomb(const QByteArray &text, int literals)
{
    // The text is in a stored block: size, its complement, bytes.
    const auto size = static_cast<quint16>(text.size());
    const auto littleEndian = [](quint16 value) {
        return QByteArray(1, static_cast<char>(value & 0xFF)) + static_cast<char>(value >> 8);
    };
    const QByteArray stored = QByteArray(1, '\0') + littleEndian(size) + littleEndian(static_cast<quint16>(~size))
        + text;
    return {.bytes = head("200 OK", {json, gzipped}) + QByteArray("\x1f\x8b\x08\0\0\0\0\0\0\xff", 10) + stored,
            .repeated = bombBlock(literals)};
}

// ---- Documents ----

/// Returns `value` with another value at `path` (keys and positions separated by dots), or without it.
QJsonValue edited(const QJsonValue &value, const QString &path, const QJsonValue &replacement)
{
    if (path.isEmpty()) {
        return replacement;
    }
    const auto first = path.section(u'.', 0, 0);
    const auto rest = path.section(u'.', 1);
    if (value.isArray()) {
        auto array = value.toArray();
        array[first.toInt()] = edited(array.at(first.toInt()), rest, replacement);
        return array;
    }
    auto object = value.toObject();
    const auto inner = edited(object.value(first), rest, replacement);
    if (inner.isUndefined()) {
        object.remove(first);
    } else {
        object[first] = inner;
    }
    return object;
}

QByteArray edited(const QByteArray &document, const QString &path, const QJsonValue &replacement)
{
    const auto parsed = QJsonDocument::fromJson(document);
    const QJsonValue value = parsed.isArray() ? QJsonValue(parsed.array()) : QJsonValue(parsed.object());
    return QJsonDocument::fromVariant(edited(value, path, replacement).toVariant()).toJson(QJsonDocument::Compact);
}

/// The document with the key `path` edited if it is of this kind; else the document itself.
Answer editedAnswer(const Request &request, Exchange exchange, const QString &path, const QJsonValue &replacement)
{
    return goodAnswer(request.exchange == exchange ? edited(request.document, path, replacement) : request.document);
}

const QStringList requiredKeys{u"status"_s, u"status.indicator"_s, u"status.description"_s, u"components.0.name"_s,
                               u"components.0.status"_s};
const QStringList allKeys = requiredKeys + QStringList{u"components"_s, u"components.0"_s};

QByteArray inEncoding(const QByteArray &document, QStringConverter::Encoding encoding, bool withMark)
{
    QStringEncoder encode(encoding, withMark ? QStringConverter::Flag::WriteBom : QStringConverter::Flag::Default);
    return encode(QString::fromUtf8(document));
}

/// The document with another value that has no meaning, so that it must be parsed but not understood. An object gets
/// another key; a list of incidents gets another key in its first incident.
QByteArray with(const QByteArray &document, const QByteArray &value)
{
    auto text = document;
    return text.insert(text.indexOf('{') + 1, "\"x\":" + value + ",");
}

// ---- The table ----

std::vector<Fault> makeFaults()
{
    std::vector<Fault> all{
        // Connections.
        {.name = "refuses connections",
         .outcome = broken,
         .answer = [](const Request &) { return Answer{}; },
         .refusesConnections = true},
        {.name = "closes at accept",
         .outcome = broken,
         .answer = [](const Request &) { return closing({}); },
         .moment = Moment::accept},
        {.name = "resets at accept",
         .outcome = broken,
         .answer = [](const Request &) { return resetting({}); },
         .moment = Moment::accept},
        {.name = "closes after the request", .outcome = broken, .answer = [](const Request &) { return closing({}); }},
        {.name = "resets after the request",
         .outcome = broken,
         .answer = [](const Request &) { return resetting({}); }},
        {.name = "closes in the head",
         .outcome = broken,
         .answer = [](const Request &) { return closing("HTTP/1.1 200 OK\r\nContent-Le"); }},
        {.name = "resets in the head",
         .outcome = broken,
         .answer = [](const Request &) { return resetting("HTTP/1.1 200 OK\r\nContent-Le"); }},
        {.name = "closes in the body",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 return closing(head("200 OK", {json, lengthOf(r.document)}) + r.document.chopped(1));
             }},
        {.name = "resets in the body",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 return resetting(head("200 OK", {json, lengthOf(r.document)}) + r.document.chopped(1));
             }},
        {.name = "resets after a complete answer",
         .outcome = harmless,
         .answer = [](const Request &r) { return resetting(goodAnswer(r.document).bytes); }},
        {.name = "keeps the connection open after “Connection: close”",
         .outcome = harmless,
         .answer =
             [](const Request &r) {
                 return Answer{head("200 OK", {json, lengthOf(r.document), "Connection: close"}) + r.document};
             }},

        // Time.
        {.name = "is silent",
         .outcome = broken,
         .answer = [](const Request &) { return Answer{}; },
         .end = End::idleTimeout},
        {.name = "falls silent in the head",
         .outcome = broken,
         .answer = [](const Request &) { return Answer{"HTTP/1.1 200 OK\r\nContent-Le"}; },
         .end = End::idleTimeout},
        {.name = "falls silent in the body",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 return Answer{head("200 OK", {json, lengthOf(r.document)}) + r.document.chopped(1)};
             },
         .end = End::idleTimeout},
        {.name = "falls silent in a chunk",
         .outcome = broken,
         .answer =
             [](const Request &r) { return Answer{head("200 OK", {json, chunked}) + chunks(r.document).chopped(9)}; },
         .end = End::idleTimeout},
        {.name = "falls silent before the last chunk",
         .outcome = broken,
         .answer =
             [](const Request &r) { return Answer{head("200 OK", {json, chunked}) + chunks(r.document).chopped(5)}; },
         .end = End::idleTimeout},
        {.name = "sends a byte of the head now and then",
         .outcome = broken,
         .answer = [](const Request &) { return dripping("HTTP/1.1 200 OK\r\nX: ", "x"); },
         .end = End::idleTimeout},
        {.name = "sends a byte of the body now and then",
         .outcome = broken,
         .answer = [](const Request &) { return dripping(head("200 OK", {json, "Content-Length: 1000000"}), " "); },
         .end = End::totalDeadline},
        {.name = "sends a small chunk now and then",
         .outcome = broken,
         .answer = [](const Request &) { return dripping(head("200 OK", {json, chunked}), "1\r\n \r\n"); },
         .end = End::totalDeadline},
        {.name = "sends a byte of a chunk size now and then",
         .outcome = broken,
         .answer = [](const Request &) { return dripping(head("200 OK", {json, chunked}), "0"); },
         .end = End::idleTimeout},
        {.name = "sends the answer in small pieces",
         .outcome = harmless,
         .answer =
             [](const Request &r) {
                 QByteArray pieces;
                 for (const char byte : r.document) {
                     pieces += QByteArray("1\r\n") + byte + "\r\n";
                 }
                 return Answer{head("200 OK", {json, chunked}) + pieces + "0\r\n\r\n"};
             }},

        // Provisional responses.
        {.name = "sends 100 first, five times",
         .outcome = harmless,
         .answer =
             [](const Request &r) {
                 return Answer{head("100 Continue", {}).repeated(5) + goodAnswer(r.document).bytes};
             }},
        {.name = "sends 102 or 103 first",
         .outcome = waitsForTheAnswer ? harmless : broken,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> statuses{"102 Processing", "103 Early Hints"};
                 return Answer{head(statuses.at(r.variant), {"Link: </a>; rel=preload"})
                               + goodAnswer(r.document).bytes};
             },
         .variants = 2},
        {.name = "sends 100 without end",
         .outcome = broken,
         .answer = [](const Request &) { return pouring({}, head("100 Continue", {})); },
         .end = End::idleTimeout},
        {.name = "sends 100 now and then",
         .outcome = broken,
         .answer = [](const Request &) { return dripping({}, head("100 Continue", {})); },
         .end = End::idleTimeout},
        {.name = "sends 103 without end",
         .outcome = broken,
         .answer = [](const Request &) { return pouring({}, head("103 Early Hints", {})); },
         .end = waitsForTheAnswer ? End::idleTimeout : End::itself},
        {.name = "switches protocols",
         .outcome = refused,
         .answer =
             [](const Request &) {
                 return Answer{head("101 Switching Protocols", {"Upgrade: websocket", "Connection: Upgrade"})};
             }},

        // Statuses.
        {.name = "answers 204 or 205",
         .outcome = {Reading::none, Reading::none, Use::yes, Delivery::delivered},
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> statuses{"204 No Content", "205 Reset Content"};
                 return Answer{head(statuses.at(r.variant),
                                    r.variant == 0 ? QList<QByteArray>{} : QList<QByteArray>{lengthOf({})})};
             },
         .variants = 2},
        {.name = "answers 304",
         .outcome = refused,
         .answer = [](const Request &) { return Answer{head("304 Not Modified", {})}; }},
        {.name = "answers 206 with a part of the document",
         .outcome = unreadable,
         .answer =
             [](const Request &r) {
                 const auto half = r.document.first(r.document.size() / 2);
                 return response("206 Partial Content", half, {"Content-Range: bytes 0-9/20"});
             }},
        {.name = "answers 300, 301, 302, 303, 307 or 308 without a Location",
         .outcome = refused,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> statuses{"300 Multiple Choices", "301 Moved",     "302 Found",
                                                  "303 See Other",        "307 Temporary", "308 Permanent"};
                 return response(statuses.at(r.variant), errorPage(statuses.at(r.variant)));
             },
         .variants = 6},
        {.name = "answers 400, 401, 403, 404, 407, 410 or 429 with HTML",
         .outcome = refused,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> statuses{"400 Bad Request", "401 Unauthorized", "403 Forbidden",
                                                  "404 Not Found",   "407 Proxy",        "410 Gone",
                                                  "429 Too Many"};
                 return response(statuses.at(r.variant), errorPage(statuses.at(r.variant)),
                                 {"WWW-Authenticate: Basic realm=\"x\""});
             },
         .variants = 7},
        {.name = "answers 500, 501, 502, 503, 504 or 599 with HTML",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> statuses{"500 Internal",    "501 Not Implemented", "502 Bad Gateway",
                                                  "503 Unavailable", "504 Timeout",         "599 x"};
                 return response(statuses.at(r.variant), errorPage(statuses.at(r.variant)), {"Retry-After: 3600"});
             },
         .variants = 6},
        {.name = "answers 503 with a valid document",
         .outcome = {Reading::taken, Reading::taken, Use::no, Delivery::failed},
         .answer = [](const Request &r) { return response("503 Unavailable", r.document, {json}); }},
        {.name = "answers 200 with HTML",
         .outcome = unreadable,
         .answer = [](const Request &) { return response("200 OK", errorPage("Sign in to this network")); }},
        {.name = "answers 200 with nothing",
         .outcome = unreadable,
         .answer = [](const Request &) { return response("200 OK", {}); }},

        // Redirects.
        {.name = "redirects to itself",
         .outcome = broken,
         .answer = [](const Request &r) { return redirect("302 Found", r.path); }},
        {.name = "redirects through 20 addresses",
         .outcome = {Reading::taken, Reading::taken, Use::yes, Delivery::delivered},
         .answer = [](const Request &r) { return redirectChain(r, 20); }},
        {.name = "redirects through 21 addresses",
         .outcome = broken,
         .answer = [](const Request &r) { return redirectChain(r, 21); }},
        {.name = "redirects from https to http",
         .outcome = broken,
         .answer = [](const Request &r) { return redirect("301 Moved", "http://" + r.host + "/"); }},
        {.name = "redirects to no web address",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> locations{"file:///etc/hostname", "data:application/json,[]",
                                                   "javascript:1",         "https://",
                                                   "https://[::1/",        "ftp://" + r.host + "/"};
                 return redirect("302 Found", locations.at(r.variant));
             },
         .variants = 6},
        {.name = "redirects to a host that refuses connections",
         .outcome = broken,
         .answer = [](const Request &) { return redirect("302 Found", "https://nobody.example/"); }},
        {.name = "redirects with 307 or 308",
         .outcome = {Reading::taken, Reading::taken, Use::yes, Delivery::failed},
         .answer =
             [](const Request &r) {
                 return r.path == "/there" ? goodAnswer(r.document)
                                           : redirect(r.variant == 0 ? "307 Temporary" : "308 Permanent", "/there");
             },
         .variants = 2},

        // Heads.
        {.name = "sends no HTTP",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> texts{"SSH-2.0-OpenSSH_9.2\r\n", "220 mail ready\r\n", r.document,
                                               QByteArray(300, '\0'),     "ICY 200 OK\r\n\r\n", "\r\n\r\n\r\n"};
                 return closing(texts.at(r.variant));
             },
         .variants = 6},
        {.name = "sends a status line that is none",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> lines{"HTTP/1.1\r\n",        "HTTP/1.1 \r\n",    "HTTP/1.1 abc OK\r\n",
                                               "HTTP/1.1 -20 OK\r\n", "HTTP/ 200 OK\r\n", "HTTP/x.y 200 OK\r\n"};
                 return closing(lines.at(r.variant) + lengthOf(r.document) + "\r\n\r\n" + r.document);
             },
         .variants = 6},
        {.name = "sends fields that are none",
         .outcome = harmless,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> fields{"no colon", ": no name", QByteArray("X: \0\x01\xff", 6),
                                                "X:", "X: a\r\n folded"};
                 return closing(head("200 OK", {fields.at(r.variant), lengthOf(r.document)}) + r.document);
             },
         .variants = 5},
        {.name = "sends a head without end",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> pieces{"x", "X: y\r\n"};
                 return pouring("HTTP/1.1 200 OK\r\nX: ", pieces.at(r.variant));
             },
         .variants = 2,
         .end = End::idleTimeout,
         .isLimitedByTimeOnly = true},
        {.name = "sends a reason phrase without end",
         .outcome = broken,
         .answer = [](const Request &) { return pouring("HTTP/1.1 200 ", "x"); },
         .end = End::idleTimeout,
         .isLimitedByTimeOnly = true},

        // Lengths.
        {.name = "announces too long a body",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> lengths{QByteArray::number(r.document.size() + 1), "4294967296",
                                                 "9223372036854775807"};
                 return closing(head("200 OK", {json, "Content-Length: " + lengths.at(r.variant)}) + r.document);
             },
         .variants = 3},
        {.name = "announces too short a body",
         .outcome = unreadable,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> lengths{QByteArray::number(r.document.size() - 1), "1", "0"};
                 return closing(head("200 OK", {json, "Content-Length: " + lengths.at(r.variant)}) + r.document);
             },
         .variants = 3},
        {.name = "announces a length that is no number",
         .outcome = harmless,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> lengths{"-1", "many", "", "99999999999999999999"};
                 return closing(head("200 OK", {json, "Content-Length: " + lengths.at(r.variant)}) + r.document);
             },
         .variants = 4},
        {.name = "announces two lengths",
         .outcome = harmless,
         .answer =
             [](const Request &r) {
                 return closing(head("200 OK", {json, lengthOf(r.document), "Content-Length: 5"}) + r.document);
             }},
        {.name = "announces a length and chunks",
         .outcome = harmless,
         .answer =
             [](const Request &r) {
                 return Answer{head("200 OK", {json, chunked, "Content-Length: 5"}) + chunks(r.document)};
             }},
        {.name = "announces nothing and closes",
         .outcome = harmless,
         .answer = [](const Request &r) { return closing(head("200 OK", {json}) + r.document); }},
        {.name = "announces nothing and closes too early",
         .outcome = unreadable,
         .answer = [](const Request &r) { return closing(head("200 OK", {json}) + r.document.chopped(1)); }},
        // The network layer takes this for the end too.
        {.name = "announces nothing and resets too early",
         .outcome = unreadable,
         .answer = [](const Request &r) { return resetting(head("200 OK", {json}) + r.document.chopped(1)); }},

        // Chunks.
        // The network layer takes this for the last chunk.
        {.name = "sends a chunk size that is no number",
         .outcome = unreadable,
         .answer =
             [](const Request &r) {
                 const QList<QByteArray> sizes{"xyz", "-5", "", "FFFFFFFFFFFFFFFFF"};
                 return closing(head("200 OK", {json, chunked}) + sizes.at(r.variant) + "\r\n" + r.document
                                + "\r\n0\r\n\r\n");
             },
         .variants = 4},
        {.name = "sends a chunk that is shorter than its size",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 const auto size = QByteArray::number(r.document.size() + 100, 16);
                 return closing(head("200 OK", {json, chunked}) + size + "\r\n" + r.document + "\r\n0\r\n\r\n");
             }},
        {.name = "sends no last chunk",
         .outcome = broken,
         .answer =
             [](const Request &r) { return closing(head("200 OK", {json, chunked}) + chunks(r.document).chopped(5)); }},
        {.name = "sends chunk extensions and trailers",
         .outcome = harmless,
         .answer =
             [](const Request &r) {
                 return Answer{head("200 OK", {json, chunked}) + QByteArray::number(r.document.size(), 16) + ";a=b\r\n"
                               + r.document + "\r\n0\r\nX: y\r\n\r\n"};
             }},
        {.name = "sends a chunk size without end",
         .outcome = broken,
         .answer = [](const Request &) { return pouring(head("200 OK", {json, chunked}), "0"); },
         .end = End::idleTimeout},

        // Amounts.
        {.name = "sends text without end",
         .outcome = broken,
         .answer = [](const Request &r) { return pouring(head("200 OK", {json}) + r.document, " "); }},
        {.name = "sends chunks without end",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 return pouring(head("200 OK", {json, chunked}) + chunks(r.document).chopped(5),
                                "400\r\n" + QByteArray(0x400, ' ') + "\r\n");
             }},
        {.name = "announces 10 GiB",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 return pouring(head("200 OK", {json, "Content-Length: 10737418240"}) + r.document, " ");
             }},
        {.name = "sends 4 MiB of brackets",
         .outcome = unreadable,
         .answer =
             [](const Request &r) {
                 // The last bracket is missing.
                 return Answer{.bytes = head("200 OK", {json}) + with(r.document, "[").chopped(2),
                               .repeated = "[],",
                               .times = 1'390'000,
                               .ending = Ending::close};
             }},

        // Compression.
        {.name = "compresses the document",
         .outcome = harmless,
         .answer = [](const Request &r) { return response("200 OK", gzip(r.document), {json, gzipped}); }},
        {.name = "names a compression that it does not use",
         .outcome = unreadable,
         .answer = [](const Request &r) { return response("200 OK", r.document, {json, gzipped}); }},
        {.name = "does not name the compression that it uses",
         .outcome = unreadable,
         .answer = [](const Request &r) { return response("200 OK", gzip(r.document), {json}); }},
        {.name = "compresses the document with an error",
         .outcome = unreadable,
         .answer =
             [](const Request &r) {
                 auto body = gzip(r.document);
                 const qsizetype places[] = {0, 12, body.size() / 2, body.size() - 6};
                 body[places[r.variant]] = static_cast<char>(~body.at(places[r.variant]));
                 return response("200 OK", body, {json, gzipped});
             },
         .variants = 4},
        {.name = "cuts off a compressed document",
         .outcome = unreadable,
         .answer = [](const Request &r) { return response("200 OK", gzip(r.document).chopped(12), {json, gzipped}); }},
        {.name = "closes within a compressed document",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 const auto body = gzip(r.document);
                 return closing(head("200 OK", {json, gzipped, lengthOf(body)}) + body.chopped(12));
             }},
        {.name = "compresses more than 100 times, without end",
         .outcome = broken,
         .answer = [](const Request &r) { return bomb(r.document, 0); }},
        {.name = "compresses 30 times, without end",
         .outcome = broken,
         .answer = [](const Request &r) { return bomb(r.document, 8); }},

        // TLS.
        {.name = "answers without TLS",
         .outcome = broken,
         .answer = [](const Request &) { return closing(head("400 Bad Request", {})); },
         .moment = Moment::accept},
        {.name = "never continues the TLS handshake",
         .outcome = broken,
         .answer = [](const Request &) { return Answer{}; },
         .end = End::idleTimeout,
         .moment = Moment::accept},
        {.name = "sends a byte of the TLS handshake now and then",
         .outcome = broken,
         .answer = [](const Request &) { return dripping(QByteArray::fromHex("1603030040"), QByteArray(1, '\2')); },
         .end = End::idleTimeout,
         .moment = Moment::accept},
        {.name = "chooses TLS 1.0 or 1.1",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 return Answer{serverHello(static_cast<char>(1 + r.variant), QByteArray::fromHex("c013"))};
             },
         .variants = 2,
         .moment = Moment::accept},
        {.name = "chooses a cipher that was not offered",
         .outcome = broken,
         .answer =
             [](const Request &r) {
                 const char *ciphers[] = {"0005", "0002", "000a", "0000"}; // RC4, no encryption, 3DES, none at all
                 return Answer{serverHello(3, QByteArray::fromHex(ciphers[r.variant]))};
             },
         .variants = 4,
         .moment = Moment::accept},
        {.name = "has an expired certificate",
         .outcome = broken,
         .answer = [](const Request &r) { return goodAnswer(r.document); },
         .certificate = Certificate::expired},
        {.name = "has a self-signed certificate",
         .outcome = broken,
         .answer = [](const Request &r) { return goodAnswer(r.document); },
         .certificate = Certificate::selfSigned},
        {.name = "has a certificate of an unknown authority",
         .outcome = broken,
         .answer = [](const Request &r) { return goodAnswer(r.document); },
         .certificate = Certificate::ofUnknownAuthority},
        {.name = "has a certificate for another host",
         .outcome = broken,
         .answer = [](const Request &r) { return goodAnswer(r.document); },
         .certificate = Certificate::forAnotherHost},
        {.name = "demands a certificate of the client",
         .outcome = broken,
         .answer = [](const Request &r) { return goodAnswer(r.document); },
         .wantsClientCertificate = true},

        // Encodings of the document.
        {.name = "begins with a byte-order mark",
         .outcome = harmless,
         .answer = [](const Request &r) { return goodAnswer("\xEF\xBB\xBF" + r.document); }},
        {.name = "sends UTF-16 or UTF-32",
         .outcome = unreadable,
         .answer =
             [](const Request &r) {
                 const auto encoding =
                     std::array{QStringConverter::Utf16LE, QStringConverter::Utf16BE, QStringConverter::Utf32LE}.at(
                         static_cast<std::size_t>(r.variant / 2));
                 return goodAnswer(inEncoding(r.document, encoding, r.variant % 2 == 0));
             },
         .variants = 6},
        {.name = "sends invalid UTF-8",
         .outcome = unreadable,
         .answer =
             [](const Request &r) {
                 const char *bytes[] = {"\xE9", "\xC0\xAF", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xE2\x82", "\x80"};
                 return goodAnswer(with(r.document, QByteArray("\"") + bytes[r.variant] + "\""));
             },
         .variants = 6},

        // Documents.
        {.name = "nests 100,000 levels",
         .outcome = unreadable,
         .answer =
             [](const Request &r) {
                 const auto open = r.variant == 0 ? QByteArray("[") : QByteArray("{\"a\":");
                 const auto close = r.variant == 0 ? QByteArray("]") : QByteArray("}");
                 return goodAnswer(with(r.document, open.repeated(100'000) + "0" + close.repeated(100'000)));
             },
         .variants = 2},
        {.name = "nests 100,000 levels and does not close them",
         .outcome = unreadable,
         .answer = [](const Request &r) { return goodAnswer(with(r.document, QByteArray(100'000, '['))); }},
        {.name = "repeats a key",
         .outcome = harmless,
         .answer =
             [](const Request &r) {
                 auto text = r.document;
                 // The first value counts.
                 const bool isFeed = r.exchange == Exchange::feed;
                 text.insert(text.lastIndexOf(isFeed ? "}]" : "}"), isFeed ? ",\"end\":7" : ",\"status\":7");
                 return goodAnswer(text);
             }},
        {.name = "cuts off the document",
         .outcome = unreadable,
         .answer =
             [](const Request &r) { return goodAnswer(r.document.first(r.document.size() * (r.variant + 1) / 4)); },
         .variants = 3},
        {.name = "sends text after the document",
         .outcome = unreadable,
         .answer = [](const Request &r) { return goodAnswer(r.document + (r.variant == 0 ? r.document : "x")); },
         .variants = 2},
        {.name = "sends a document of another kind",
         .outcome = unreadable,
         .answer =
             [](const Request &r) {
                 const QByteArray other = r.exchange == Exchange::feed ? "{}" : "[]";
                 const QList<QByteArray> documents{other, "null", "7", "true", "\"none\"", "[7]", "[[]]"};
                 return goodAnswer(documents.at(r.variant));
             },
         .variants = 7},
        {.name = "page: a required key is missing",
         .outcome = {Reading::none, Reading::taken, Use::yes, Delivery::delivered},
         .answer =
             [](const Request &r) {
                 return editedAnswer(r, Exchange::page, requiredKeys.at(r.variant), QJsonValue::Undefined);
             },
         .variants = 5},
        {.name = "page: the components are missing or null, so that its indicator counts",
         .outcome = harmless,
         .answer =
             [](const Request &r) {
                 return editedAnswer(r, Exchange::page, u"components"_s,
                                     r.variant == 0 ? QJsonValue::Undefined : QJsonValue::Null);
             },
         .variants = 2},
        {.name = "page: a required key is null",
         .outcome = {Reading::none, Reading::taken, Use::yes, Delivery::delivered},
         .answer = [](const Request &r) { return editedAnswer(r, Exchange::page, requiredKeys.at(r.variant), {}); },
         .variants = 5},
        {.name = "page: a key has a value of another type",
         .outcome = {Reading::none, Reading::taken, Use::yes, Delivery::delivered},
         .answer =
             [](const Request &r) {
                 const auto key = allKeys.at(r.variant);
                 const bool isText = key.endsWith(u"name"_s) || (key != u"status"_s && key.endsWith(u"status"_s))
                     || key.endsWith(u"indicator"_s) || key.endsWith(u"description"_s);
                 const QList<QJsonValue> values{7, true, isText ? QJsonValue(QJsonArray{u"a"_s}) : QJsonValue(u"a"_s)};
                 return editedAnswer(r, Exchange::page, key, values.at(r.variant % 3));
             },
         .variants = 7},
        {.name = "page: the indicator is unknown and no component is the service’s",
         .outcome = {Reading::none, Reading::taken, Use::yes, Delivery::delivered},
         .answer =
             [](const Request &r) {
                 if (r.exchange != Exchange::page) {
                     return goodAnswer(r.document);
                 }
                 return goodAnswer(edited(edited(r.document, u"status.indicator"_s, u"maintenance"_s),
                                          u"components.0.name"_s, u"Something else"_s));
             }},
        {.name = "feed: an entry is no incident",
         .outcome = {Reading::taken, Reading::none, Use::yes, Delivery::delivered},
         .answer =
             [](const Request &r) {
                 const QList<QJsonValue> values{7, true, u"text"_s, QJsonArray{}, QJsonValue::Null};
                 return editedAnswer(r, Exchange::feed, u"0"_s, values.at(r.variant));
             },
         .variants = 5},
        {.name = "feed: an incident names no product, so that it does not count",
         .outcome = harmless,
         .answer =
             [](const Request &r) {
                 if (r.exchange != Exchange::feed) {
                     return goodAnswer(r.document);
                 }
                 const QList<QJsonValue> values{7,
                                                true,
                                                u"Gemini"_s,
                                                QJsonObject{},
                                                QJsonArray{u"Gemini"_s},
                                                QJsonArray{QJsonObject{{u"title"_s, 7}}},
                                                QJsonValue::Null,
                                                QJsonValue::Undefined};
                 const auto current = edited(r.document, u"0.end"_s, QJsonValue::Undefined);
                 return goodAnswer(edited(current, u"0.affected_products"_s, values.at(r.variant)));
             },
         .variants = 8},
        {.name = "feed: an end of any value ends an incident",
         .outcome = harmless,
         .answer =
             [](const Request &r) {
                 const QList<QJsonValue> values{7, true, QJsonValue::Null, QJsonArray{}, QJsonObject{}};
                 return editedAnswer(r, Exchange::feed, u"0.end"_s, values.at(r.variant));
             },
         .variants = 5},
    };
    return all;
}

} // namespace

const std::vector<Fault> &faults()
{
    static const auto all = makeFaults();
    return all;
}

Answer goodAnswer(const QByteArray &document)
{
    return response("200 OK", document, {json});
}

} // namespace kelvo
