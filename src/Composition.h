#pragma once

#include "alerts/NotifierStore.h"
#include "http/HttpSession.h"
#include "monitor/StatusStore.h"
#include "platform/Platform.h"
#include "settings/SettingsStore.h"
#include "sources/StatusProvider.h"

namespace kelvo {

/// The parts of the program that tests and the demonstration substitute: the system, the network and the wall clock.
struct Boundaries
{
    Platform platform;
    HttpNetwork statusNetwork; ///< for requests to the vendors
    HttpNetwork alertNetwork;  ///< for posts to Slack and Telegram
    WallClock wallClock;
};

/// Makes the boundaries of the real program. Requires a QApplication.
Boundaries makeBoundaries();

/// Makes and connects the stores of the process. `shared()` of each store returns the store of the living Composition.
/// Only one Composition may exist at a time.
class Composition
{
public:
    explicit Composition(Boundaries boundaries);
    ~Composition();
    Composition(const Composition &) = delete;
    Composition &operator=(const Composition &) = delete;

    Platform &platform() { return boundaries_.platform; }

private:
    friend class SettingsStore;
    friend class NotifierStore;
    friend class StatusStore;
    static Composition &current();

    Boundaries boundaries_;
    HttpSession statusSession_;
    HttpSession alertSession_;
    StatusProvider provider_;
    SettingsStore settings_;
    NotifierStore notifier_;
    StatusStore status_;
};

} // namespace kelvo
