#include "settings/CheckInterval.h"

namespace kelvo {

using namespace Qt::StringLiterals;

QString displayTitle(CheckInterval interval)
{
    switch (interval) {
    case CheckInterval::oneMinute: return u"1 minute"_s;
    case CheckInterval::fiveMinutes: return u"5 minutes"_s;
    }
    Q_UNREACHABLE();
}

} // namespace kelvo
