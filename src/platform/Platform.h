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

/// The services of the operating system that the application uses, one seam each.
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

/// The services of the system that this is built for. Needs the QApplication; every one of them works, as far as it
/// can, whatever is missing on the machine.
Platform makePlatform();

class SingleInstance;
/// Apart from the others: it is asked before anything else is made.
std::unique_ptr<SingleInstance> makeSingleInstance();

/// Where libraries that belong to the program alone are, seen from the folder of the executable.
QString libraryFolder();

} // namespace kelvo
