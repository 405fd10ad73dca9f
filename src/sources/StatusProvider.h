#pragma once

#include "http/HttpSession.h"
#include "sources/StatusChecks.h"

namespace kelvo {

/// Asks the vendors over HTTP. All requests share one client; there is no other state.
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
    HttpSession &session_;
};

} // namespace kelvo
