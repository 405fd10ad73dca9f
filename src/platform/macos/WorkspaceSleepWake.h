#pragma once

#include "platform/SleepWake.h"

#include <memory>

namespace kelvo {

class NotificationObserver;

/// Sleep and wake as reported by NSWorkspace.
class WorkspaceSleepWake : public SleepWake
{
    Q_OBJECT

public:
    WorkspaceSleepWake();
    ~WorkspaceSleepWake() override;

private:
    std::unique_ptr<NotificationObserver> willSleep_;
    std::unique_ptr<NotificationObserver> didWake_;
};

} // namespace kelvo
