#include "monitor/DisplayRules.h"

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

bool isRecentlyRecovered(const ServiceStatus &status, TimePoint now)
{
    return status.recoveredUntil && *status.recoveredUntil > now;
}

template<typename Predicate>
std::optional<Service> firstWhere(const std::vector<WatchedStatus> &watched, Predicate predicate)
{
    const auto found = std::find_if(watched.begin(), watched.end(), predicate);
    if (found == watched.end()) {
        return std::nullopt;
    }
    return found->service;
}

} // namespace

std::optional<ServiceID> promotedHero(const std::vector<WatchedStatus> &watched, std::optional<ServiceID> primary,
                                      TimePoint now)
{
    const auto inTrouble = [](const WatchedStatus &w) { return isAffected(w.status.health); };
    const auto recovered = [now](const WatchedStatus &w) { return isRecentlyRecovered(w.status, now); };
    if (const auto service = firstWhere(watched, inTrouble)) {
        return service->id;
    }
    if (const auto service = firstWhere(watched, recovered)) {
        return service->id;
    }
    return primary;
}

std::optional<Service> firstOtherAffected(const std::vector<WatchedStatus> &watched, std::optional<ServiceID> hero)
{
    return firstWhere(watched,
                      [hero](const WatchedStatus &w) { return w.service.id != hero && isAffected(w.status.health); });
}

QString heroStatusLabel(const std::optional<ServiceStatus> &hero)
{
    if (!hero) {
        return u"No service selected"_s;
    }
    switch (hero->health) {
    case ServiceHealth::operational: return u"Operational"_s;
    case ServiceHealth::degraded: return hero->label.isEmpty() ? u"Partial outage"_s : hero->label;
    case ServiceHealth::outage: return u"Major outage"_s;
    case ServiceHealth::unknown: return u"Checking…"_s;
    }
    Q_UNREACHABLE();
}

QString heroBodyLine(const std::optional<ServiceStatus> &hero, const std::optional<Service> &otherAffected,
                     TimePoint now)
{
    if (!hero) {
        return u"Choose a service in Settings."_s;
    }
    switch (hero->health) {
    case ServiceHealth::degraded:
    case ServiceHealth::outage:
        return otherAffected ? otherAffected->name + u" is affected too. We’ll tell you."_s
                             : u"We’ll notify you when it’s back."_s;
    case ServiceHealth::operational:
        return isRecentlyRecovered(*hero, now) ? u"Recovered · back to normal"_s : u"Everything is working normally."_s;
    case ServiceHealth::unknown: return u"Checking status…"_s;
    }
    Q_UNREACHABLE();
}

QString groupHeading(const std::optional<ServiceStatus> &hero, bool anotherIsAffected)
{
    if (anotherIsAffected) {
        return u"Also affected"_s;
    }
    return hero && isAffected(hero->health) ? u"Still working"_s : u"Watching"_s;
}

RingState ringState(bool watching, const std::vector<WatchedStatus> &watched)
{
    const auto any = [&watched](ServiceHealth health) {
        return std::any_of(watched.begin(), watched.end(),
                           [health](const WatchedStatus &w) { return w.status.health == health; });
    };
    if (!watching) {
        return RingState::inactive;
    }
    if (any(ServiceHealth::outage)) {
        return RingState::outage;
    }
    if (any(ServiceHealth::degraded)) {
        return RingState::recovering;
    }
    // Without an operational service, nothing is watched or every health is unknown.
    return any(ServiceHealth::operational) ? RingState::available : RingState::inactive;
}

} // namespace kelvo
