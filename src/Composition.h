#pragma once

#include "alerts/NotifierStore.h"
#include "http/HttpSession.h"
#include "monitor/StatusStore.h"
#include "platform/Platform.h"
#include "settings/SettingsStore.h"
#include "sources/StatusProvider.h"

namespace kelvo {

/// Everything that the stores are made of and that lies outside this program: the system, the network, the time.
struct Boundaries
{
    Platform platform;
    HttpNetwork statusNetwork; ///< to the vendors
    HttpNetwork alertNetwork;  ///< to the user's own channels
    WallClock wallClock;
};

/// The real ones. Needs the QApplication.
Boundaries makeBoundaries();

/// The stores of the process, composed once. What `shared()` of each store gives is this one's.
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
