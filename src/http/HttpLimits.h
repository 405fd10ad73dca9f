#pragma once

#include <QtGlobal>

#include <chrono>

namespace kelvo {

/// The limits of one request. A request that exceeds one of them fails.
struct HttpLimits
{
    std::chrono::milliseconds idleTimeout; ///< time without a byte in either direction; also for a route lookup
    std::chrono::milliseconds totalDeadline{60'000}; ///< from the request to the last byte of the final response
    qint64 maximumKeptSize = 4 * 1024 * 1024;        ///< bytes of a body that is kept, after decompression
    qint64 maximumDiscardedSize = 32 * 1024 * 1024;  ///< bytes of a body that is discarded, as transferred
};

} // namespace kelvo
