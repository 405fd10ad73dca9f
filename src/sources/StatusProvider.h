#pragma once

#include "http/HttpSession.h"
#include "sources/DocumentDecoder.h"
#include "sources/StatusChecks.h"

namespace kelvo {

/// Asks the vendors over HTTP. All requests share one client; there is no other state. Destroying it cancels the futures.
class StatusProvider : public StatusChecks
{
public:
    /// The header "User-Agent" of every status request and probe.
    static const QByteArray userAgent;
    /// The bounds of every status request and probe.
    static const HttpLimits limits;

    explicit StatusProvider(HttpSession &session);

    QFuture<StatusReading> read(const Service &service) override;
    QFuture<bool> probe(const Service &service) override;
    void abortAll() override { session_.abortAll(); }

    /// Reads the status page at the origin `base` for the components with these names.
    QFuture<StatusReading> checkStatuspage(const QString &base, const QStringList &componentNames);
    /// Reads Google's incident feed for the product with this title.
    QFuture<StatusReading> checkGoogleDashboard(const QString &product);

private:
    QFuture<StatusReading> readDocument(const QUrl &url, DocumentDecoder::Decode decode);

    HttpSession &session_;
    DocumentDecoder decoder_;
    QObject context_; ///< of the requests that decoder_ waits for
};

} // namespace kelvo
