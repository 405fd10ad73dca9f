#pragma once

#include <QtGlobal>

#include <chrono>

namespace kelvo {

/// The bounds of one request.
struct HttpLimits
{
    std::chrono::milliseconds idleTimeout; ///< without a byte in either direction, or for the lookup of a route
    std::chrono::milliseconds totalDeadline{60'000}; ///< from the request to the last byte of the final response
    qint64 maximumKeptSize = 4 * 1024 * 1024;        ///< of a body that is kept, decompressed, bytes
    qint64 maximumDiscardedSize = 32 * 1024 * 1024;  ///< of a body that is discarded, as it arrives, bytes
};

} // namespace kelvo
