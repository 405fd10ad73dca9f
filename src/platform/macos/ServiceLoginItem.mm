#include "platform/macos/ServiceLoginItem.h"

#import <ServiceManagement/ServiceManagement.h>

namespace kelvo {

bool ServiceLoginItem::isEnabled() const
{
    return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
}

bool ServiceLoginItem::registerItem()
{
    // The system reports an error when an application that is already registered is registered again.
    return isEnabled() || [SMAppService.mainAppService registerAndReturnError:nil];
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
