#include "platform/macos/ServiceLoginItem.h"

#include "platform/macos/NotificationObserver.h"

#import <AppKit/AppKit.h>
#import <ServiceManagement/ServiceManagement.h>

namespace kelvo {

// The user may approve or remove the registration in the system's settings, which does not notify the application.
class ServiceLoginItem::Observers
{
public:
    explicit Observers(ServiceLoginItem *item)
        : activated_(NSNotificationCenter.defaultCenter, NSApplicationDidBecomeActiveNotification,
                     [item] { Q_EMIT item->changed(); })
    {
    }

private:
    NotificationObserver activated_;
};

ServiceLoginItem::ServiceLoginItem()
    : observers_(std::make_unique<Observers>(this))
{
}

ServiceLoginItem::~ServiceLoginItem() = default;

bool ServiceLoginItem::isEnabled() const
{
    return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
}

bool ServiceLoginItem::registerItem()
{
    // The system reports an error when an application that is already registered is registered again.
    if (!isEnabled()) {
        [SMAppService.mainAppService registerAndReturnError:nil];
    }
    if (SMAppService.mainAppService.status == SMAppServiceStatusRequiresApproval) {
        [SMAppService openSystemSettingsLoginItems];
    }
    return isEnabled();
}

bool ServiceLoginItem::unregisterItem()
{
    // The system also reports an error when there is no registration to remove. A registration that waits for the
    // user's approval exists and can be removed.
    switch (SMAppService.mainAppService.status) {
    case SMAppServiceStatusNotRegistered:
    case SMAppServiceStatusNotFound: return true;
    case SMAppServiceStatusEnabled:
    case SMAppServiceStatusRequiresApproval: break;
    }
    return [SMAppService.mainAppService unregisterAndReturnError:nil];
}

} // namespace kelvo
