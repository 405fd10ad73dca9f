#include "platform/WorkActivity.h"

#import <Foundation/Foundation.h>

namespace kelvo {

// The header is used from C++, so it holds the token as an untyped pointer with a reference of its own.

WorkActivity::WorkActivity()
    : activity_(const_cast<void *>(CFBridgingRetain([NSProcessInfo.processInfo
          beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                            reason:@"Checks the status of the watched services"])))
{
}

WorkActivity::~WorkActivity()
{
    [NSProcessInfo.processInfo endActivity:CFBridgingRelease(activity_)];
}

} // namespace kelvo
