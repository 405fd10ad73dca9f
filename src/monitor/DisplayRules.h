#pragma once

#include "model/Service.h"
#include "model/ServiceStatus.h"
#include "monitor/RingState.h"

#include <QString>

#include <optional>
#include <vector>

namespace kelvo {

/// A watched service and its record.
struct WatchedStatus
{
    Service service;
    ServiceStatus status;
};

// The rules that derive the ring and the texts of the popover from the records. All functions are pure. Lists are in
// the user's order. The hero is the service that the popover shows large; nullopt when there is none.

/// Chooses the hero: the first affected service, else the first service whose recovery is still shown at `now`, else
/// `primary`.
std::optional<ServiceID> promotedHero(const std::vector<WatchedStatus> &watched, std::optional<ServiceID> primary,
                                      TimePoint now);

/// Returns the first affected service other than the hero.
std::optional<Service> firstOtherAffected(const std::vector<WatchedStatus> &watched, std::optional<ServiceID> hero);

/// The status of the hero in a word or two.
QString heroStatusLabel(const std::optional<ServiceStatus> &hero);
/// The sentence under the status of the hero.
QString heroBodyLine(const std::optional<ServiceStatus> &hero, const std::optional<Service> &otherAffected,
                     TimePoint now);
/// The heading above the other services.
QString groupHeading(const std::optional<ServiceStatus> &hero, bool anotherIsAffected);

/// The state of the ring: the worst health of the watched services, or `inactive` when `watching` is false.
RingState ringState(bool watching, const std::vector<WatchedStatus> &watched);

} // namespace kelvo
