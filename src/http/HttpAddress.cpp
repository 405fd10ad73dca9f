#include "http/HttpAddress.h"

using namespace Qt::StringLiterals;

namespace kelvo {

bool isWebAddress(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty() && (url.scheme() == "http"_L1 || url.scheme() == "https"_L1);
}

QUrl originOf(const QUrl &url)
{
    QUrl origin;
    origin.setScheme(url.scheme());
    origin.setHost(url.host());
    const int defaultPort = url.scheme() == "https"_L1 ? 443 : 80;
    if (url.port(defaultPort) != defaultPort) {
        origin.setPort(url.port());
    }
    origin.setPath(u"/"_s);
    return origin;
}

} // namespace kelvo
