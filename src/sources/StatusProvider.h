#pragma once

#include "http/HttpSession.h"
#include "sources/StatusChecks.h"

namespace kelvo {

/// Asks the vendors over HTTP. Stateless but for the client, which all its requests share.
class StatusProvider : public StatusChecks
{
public:
    /// The header "User-Agent" of every status request and probe.
    static const QByteArray userAgent;
    /// The bounds of every status request and probe.
    static const HttpLimits limits;

    explicit StatusProvider(HttpSession &session);

    QFuture<StatusReading> checkStatuspage(const QString &base, const QStringList &componentNames) override;
    QFuture<StatusReading> checkGoogleDashboard(const QString &product) override;
    QFuture<bool> probe(const Service &service) override;
    void restFor(std::chrono::milliseconds duration) override;

private:
    HttpSession &session_;
};

} // namespace kelvo
