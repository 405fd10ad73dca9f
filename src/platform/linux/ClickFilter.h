#pragma once

#include <chrono>
#include <optional>

namespace kelvo {

/// Drops the second click of a double click, for trays that report both as clicks.
class ClickFilter
{
public:
    using Instant = std::chrono::steady_clock::time_point;

    explicit ClickFilter(std::chrono::milliseconds doubleClickInterval)
        : interval_(doubleClickInterval)
    {
    }

    /// Whether a click at this time counts.
    bool accepts(Instant now)
    {
        if (accepted_ && now - *accepted_ < interval_) {
            return false;
        }
        accepted_ = now;
        return true;
    }

private:
    std::chrono::milliseconds interval_;
    std::optional<Instant> accepted_; ///< the last click that counted
};

} // namespace kelvo
