#include "platform/macos/WorkspaceSleepWake.h"

#include "platform/macos/NotificationObserver.h"

#import <AppKit/AppKit.h>

namespace kelvo {

WorkspaceSleepWake::WorkspaceSleepWake()
{
    // The workspace posts these notifications to its own center only.
    NSNotificationCenter *center = NSWorkspace.sharedWorkspace.notificationCenter;
    willSleep_ = std::make_unique<NotificationObserver>(center, NSWorkspaceWillSleepNotification,
                                                        [this] { Q_EMIT willSleep(); });
    didWake_ = std::make_unique<NotificationObserver>(center, NSWorkspaceDidWakeNotification,
                                                      [this] { Q_EMIT didWake(); });
}

WorkspaceSleepWake::~WorkspaceSleepWake() = default;

} // namespace kelvo
