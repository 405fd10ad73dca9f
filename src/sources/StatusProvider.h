#pragma once

#include "http/HttpSession.h"
#include "sources/DocumentDecoder.h"
#include "sources/StatusChecks.h"

namespace kelvo {

/// Sends the requests of the monitor to the vendors over HTTP. Destroying the provider cancels the futures.
class StatusProvider : public StatusChecks
{
public:
    /// The User-Agent header of every status request and probe.
    static const QByteArray userAgent;
    /// The limits of every status request and probe.
    static const HttpLimits limits;

    explicit StatusProvider(HttpSession &session);

    QFuture<StatusReading> read(const Service &service) override;
    QFuture<bool> probe(const Service &service) override;
    void abortAll() override { session_.abortAll(); }

    /// Reads the status of the components with these names from the status page at the origin `base`.
    QFuture<StatusReading> checkStatuspage(const QString &base, const QStringList &componentNames);
    /// Reads the status of the product with this title from Google's incident feed.
    QFuture<StatusReading> checkGoogleDashboard(const QString &product);

private:
    /// `subject` is what `decode` reads from the document.
    QFuture<StatusReading> readDocument(const QUrl &url, const QStringList &subject, DocumentDecoder::Decode decode);

    HttpSession &session_;
    DocumentDecoder decoder_;
    QObject context_; ///< the context of the continuations that use decoder_
};

} // namespace kelvo
