#pragma once

#include "model/Service.h"
#include "model/ServiceStatus.h"
#include "monitor/RingState.h"

#include <QString>

#include <optional>
#include <vector>

namespace kelvo {

/// A watched service with what is known of it.
struct WatchedStatus
{
    Service service;
    ServiceStatus status;
};

// What the ring and the popover say of a set of records. All of it follows from the arguments alone; the lists are in
// the user's order, and "other" services are those whose id is not the hero's.

/// The service to show large: the first in trouble, else the first whose recovery is still on show at `now`, else
/// `primary`.
std::optional<ServiceID> promotedHero(const std::vector<WatchedStatus> &watched, std::optional<ServiceID> primary,
                                      TimePoint now);

/// The first service in trouble other than the hero.
std::optional<Service> firstOtherAffected(const std::vector<WatchedStatus> &watched, std::optional<ServiceID> hero);

/// The hero's status in a word or two.
QString heroStatusLabel(const std::optional<ServiceStatus> &hero);
/// The sentence under it.
QString heroBodyLine(const std::optional<ServiceStatus> &hero, const std::optional<Service> &otherAffected,
                     TimePoint now);
/// The heading over the other services.
QString groupHeading(const std::optional<ServiceStatus> &hero, bool anotherIsAffected);

RingState ringState(bool watching, const std::vector<WatchedStatus> &watched);

} // namespace kelvo
