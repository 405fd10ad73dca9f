#pragma once

#include <QtGlobal>

#include <chrono>

namespace kelvo {

/// The bounds of one request.
struct HttpLimits
{
    std::chrono::milliseconds idleTimeout;           ///< without a byte in either direction
    std::chrono::milliseconds totalDeadline{60'000}; ///< from the request to the last byte of the final response
    qint64 maximumBodySize = 32 * 1024 * 1024;       ///< of the decoded body, bytes
};

} // namespace kelvo
