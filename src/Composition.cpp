#include "Composition.h"

namespace kelvo {

namespace {

Composition *instance = nullptr;

} // namespace

Boundaries makeBoundaries()
{
    return {
        .platform = makePlatform(),
        .statusNetwork = {},
        .alertNetwork = {},
        .wallClock = std::chrono::system_clock::now,
    };
}

Composition::Composition(Boundaries boundaries)
    : boundaries_(std::move(boundaries))
    , statusSession_(std::move(boundaries_.statusNetwork), StatusProvider::limits, StatusProvider::userAgent)
    , alertSession_(std::move(boundaries_.alertNetwork), NotifierStore::limits)
    , provider_(statusSession_)
    , settings_(*boundaries_.platform.preferences, *boundaries_.platform.loginItem)
    , notifier_(settings_, *boundaries_.platform.notificationCenter, alertSession_)
    , status_(settings_, notifier_, provider_, *boundaries_.platform.clock, *boundaries_.platform.sleepWake,
              *boundaries_.platform.networkWatch, boundaries_.wallClock)
{
    Q_ASSERT(!instance);
    instance = this;
}

Composition::~Composition()
{
    instance = nullptr;
}

Composition &Composition::current()
{
    Q_ASSERT(instance);
    return *instance;
}

SettingsStore &SettingsStore::shared()
{
    return Composition::current().settings_;
}

NotifierStore &NotifierStore::shared()
{
    return Composition::current().notifier_;
}

StatusStore &StatusStore::shared()
{
    return Composition::current().status_;
}

} // namespace kelvo
