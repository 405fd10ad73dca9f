#include "platform/macos/RunningApplicationInstance.h"

#include "platform/macos/NotificationObserver.h"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>

#include <unistd.h>

// Handles the event that the system sends when the bundle is opened while it runs.
@interface KelvoReopenHandler : NSObject
- (instancetype)initWithReopened:(void (^)(void))reopened;
@end

@implementation KelvoReopenHandler {
    void (^reopened_)(void);
}

- (instancetype)initWithReopened:(void (^)(void))reopened
{
    if ((self = [super init])) {
        reopened_ = [reopened copy];
        [NSAppleEventManager.sharedAppleEventManager setEventHandler:self
                                                         andSelector:@selector(handleReopen:withReplyEvent:)
                                                       forEventClass:kCoreEventClass
                                                          andEventID:kAEReopenApplication];
    }
    return self;
}

- (void)dealloc
{
    [NSAppleEventManager.sharedAppleEventManager removeEventHandlerForEventClass:kCoreEventClass
                                                                      andEventID:kAEReopenApplication];
}

- (void)handleReopen:(NSAppleEventDescriptor *)event withReplyEvent:(NSAppleEventDescriptor *)reply
{
    Q_UNUSED(event)
    Q_UNUSED(reply)
    reopened_();
}

@end

namespace kelvo {

namespace {

NSNotificationName const handOver = @"app.kelvo.Kelvo.Activate";

// When two processes start at the same time, the one with the lower process id stays.
bool precedesThisProcess(NSRunningApplication *application)
{
    return application.finishedLaunching || application.processIdentifier < ::getpid();
}

NSRunningApplication *runningInstance(NSString *bundleIdentifier)
{
    NSArray<NSRunningApplication *> *all = [NSRunningApplication
        runningApplicationsWithBundleIdentifier:bundleIdentifier];
    for (NSRunningApplication *each in all) {
        if (each.processIdentifier != ::getpid() && !each.terminated && precedesThisProcess(each)) {
            return each;
        }
    }
    return nil;
}

} // namespace

class RunningApplicationInstance::Observers
{
public:
    explicit Observers(RunningApplicationInstance *instance)
        : requested_(^{ Q_EMIT instance->activationRequested(); })
        , handedOver_(NSDistributedNotificationCenter.defaultCenter, handOver,
                      [instance] { Q_EMIT instance->activationRequested(); })
        , launched_(NSNotificationCenter.defaultCenter, NSApplicationDidFinishLaunchingNotification,
                    [this] { handleReopening(); })
    {
        if (NSRunningApplication.currentApplication.finishedLaunching) {
            handleReopening();
        }
    }

private:
    // Called after the launch has finished, because the launch installs the application's own handler over this one.
    void handleReopening() { reopen_ = [[KelvoReopenHandler alloc] initWithReopened:requested_]; }

    void (^requested_)(void);
    KelvoReopenHandler *reopen_ = nil;
    NotificationObserver handedOver_;
    NotificationObserver launched_;
};

RunningApplicationInstance::RunningApplicationInstance() = default;

RunningApplicationInstance::~RunningApplicationInstance() = default;

SingleInstance::Outcome RunningApplicationInstance::acquire()
{
    NSString *bundleIdentifier = NSBundle.mainBundle.bundleIdentifier;
    if (NSRunningApplication *running = bundleIdentifier ? runningInstance(bundleIdentifier) : nil) {
        [NSDistributedNotificationCenter.defaultCenter postNotificationName:handOver
                                                                     object:nil
                                                                   userInfo:nil
                                                         deliverImmediately:YES];
        [running activateWithOptions:0];
        return Outcome::handedOver;
    }
    observers_ = std::make_unique<Observers>(this);
    return Outcome::acquired;
}

} // namespace kelvo
