#include "settings/CheckInterval.h"

#include <QtGlobal>

namespace kelvo {

using namespace std::chrono_literals;

std::chrono::seconds duration(CheckInterval interval)
{
    switch (interval) {
    case CheckInterval::oneMinute: return 60s;
    case CheckInterval::fiveMinutes: return 300s;
    }
    Q_UNREACHABLE();
}

int rawValue(CheckInterval interval)
{
    return static_cast<int>(duration(interval).count());
}

std::optional<CheckInterval> checkIntervalFromRawValue(int raw)
{
    for (const auto interval : allCheckIntervals) {
        if (rawValue(interval) == raw) {
            return interval;
        }
    }
    return std::nullopt;
}

} // namespace kelvo
