#pragma once

#include <QByteArray>

#include <optional>

namespace kelvo {

/// What a request came to. `status` is missing when the transfer failed: no network, name resolution, TLS, a timeout,
/// a broken or oversized body, a refused redirect. Otherwise it is the final response's HTTP status code, whatever it is.
/// One break goes unnoticed by the network layer: a compressed body of announced length that is cut off is handed over cut
/// off, so whoever reads a body makes sure that it is whole.
struct HttpResponse
{
    std::optional<int> status;
    QByteArray body; ///< decoded; empty when the transfer failed
};

} // namespace kelvo
