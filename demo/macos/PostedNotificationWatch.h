#pragma once

#include "NotificationWatch.h"

#include "platform/Platform.h"

namespace kelvo {

/// Observes the notifications that the program hands to the system. No program sees what another one posts there.
class PostedNotificationWatch : public NotificationWatch
{
    Q_OBJECT

public:
    /// Replaces the notification center of the platform by one that also tells this object.
    explicit PostedNotificationWatch(Platform &platform);

    /// Asks the user to allow notifications, if the system has not yet asked.
    bool start() override;

private:
    class Center;

    NotificationCenter *center_;
};

} // namespace kelvo
