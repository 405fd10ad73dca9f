#include "platform/macos/ServiceLoginItem.h"

#import <ServiceManagement/ServiceManagement.h>

namespace kelvo {

bool ServiceLoginItem::isEnabled() const
{
    return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
}

bool ServiceLoginItem::registerItem()
{
    // To register once more is an error to the system.
    return isEnabled() || [SMAppService.mainAppService registerAndReturnError:nil];
}

bool ServiceLoginItem::unregisterItem()
{
    // So is to remove what is not there. One that waits for the user's approval is there.
    switch (SMAppService.mainAppService.status) {
    case SMAppServiceStatusNotRegistered:
    case SMAppServiceStatusNotFound: return true;
    case SMAppServiceStatusEnabled:
    case SMAppServiceStatusRequiresApproval: break;
    }
    return [SMAppService.mainAppService unregisterAndReturnError:nil];
}

} // namespace kelvo
