#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

namespace kelvo {

/// One header line.
struct HttpHeader
{
    QByteArray name;
    QByteArray value;
};

/// One request as the simulated internet received it.
struct SimulatedRequest
{
    QByteArray method;
    QString scheme;  ///< "http" or "https", as the client intended
    QString host;    ///< in lower case, without the port
    QByteArray path; ///< with the query, exactly as sent
    QList<HttpHeader> headers;
    QByteArray body;

    /// The value of the first header with this name, ignoring case; null when there is none.
    QByteArray header(const QByteArray &name) const;
    bool hasHeader(const QByteArray &name) const { return !header(name).isNull(); }
    QUrl url() const { return QUrl(scheme + QStringLiteral("://") + host + QString::fromUtf8(path)); }
};

} // namespace kelvo
