#include "model/RelativeTime.h"

#include <algorithm>

namespace kelvo::RelativeTime {

using namespace Qt::StringLiterals;

namespace {

QString ago(long long count, QLatin1StringView unit)
{
    return u"Checked %1 %2%3 ago"_s.arg(QString::number(count), unit, count == 1 ? ""_L1 : "s"_L1);
}

} // namespace

QString checked(std::optional<TimePoint> lastChecked, TimePoint now)
{
    using namespace std::chrono;
    if (!lastChecked) {
        return u"Not checked yet"_s;
    }
    // The wall clock may have been set back since the check.
    const auto elapsed = std::max(duration_cast<seconds>(now - *lastChecked), 0s);
    if (elapsed < 1min) {
        return ago(elapsed.count(), "second"_L1);
    }
    if (elapsed < 1h) {
        return ago(duration_cast<minutes>(elapsed).count(), "minute"_L1);
    }
    return ago(duration_cast<hours>(elapsed).count(), "hour"_L1);
}

} // namespace kelvo::RelativeTime
