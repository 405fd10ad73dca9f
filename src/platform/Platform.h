#pragma once

#include "platform/Appearance.h"
#include "platform/ContinuousClock.h"
#include "platform/LoginItem.h"
#include "platform/NetworkWatch.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "platform/SleepWake.h"
#include "platform/StatusItem.h"

#include <QString>

#include <memory>

namespace kelvo {

/// The services of the operating system that the application uses. Each is an interface with one implementation per
/// system and a fake for tests.
struct Platform
{
    std::unique_ptr<ContinuousClock> clock;
    std::unique_ptr<SleepWake> sleepWake;
    std::unique_ptr<NetworkWatch> networkWatch;
    std::unique_ptr<NotificationCenter> notificationCenter;
    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<Preferences> preferences;
    std::unique_ptr<Appearance> appearance;
    std::unique_ptr<StatusItem> statusItem;
};

/// Makes the implementations for the system that the program is built for. Requires a QApplication. Nothing fails when
/// a system service is missing (no bus, no tray, a read-only home): each implementation does what it still can.
Platform makePlatform();

class SingleInstance;
/// Separate from Platform, because it is needed before anything else is made.
std::unique_ptr<SingleInstance> makeSingleInstance();

/// Returns the path from which a private library of the program is loaded. `name` has no suffix. On Linux the file stays
/// open, so that the path leads to the same file when an upgrade replaces or a removal deletes it. Requires an application.
QString openLibrary(const QString &name);

} // namespace kelvo
