#pragma once

#include <QByteArray>

#include <optional>

namespace kelvo {

/// The result of a request. `status` is the HTTP status code of the final response, whatever it is. It is nullopt when
/// the transfer failed: no network, name resolution, TLS, a timeout, a broken or oversized body, a refused redirect.
///
/// The network layer does not detect one failure: a compressed body with a Content-Length that is cut off is returned
/// truncated. A caller that reads the body must check that it is complete.
struct HttpResponse
{
    std::optional<int> status;
    QByteArray body; ///< decompressed; empty when the transfer failed or the body was discarded
};

} // namespace kelvo
