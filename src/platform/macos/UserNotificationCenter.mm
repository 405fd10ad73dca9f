#include "platform/macos/UserNotificationCenter.h"

#include <QPointer>
#include <QPromise>

#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>

// While a window of this application has the focus, the system shows the application's notifications only if its
// delegate asks for it. The delegate also learns when the user clicks a notification.
@interface KelvoNotificationPresenter : NSObject <UNUserNotificationCenterDelegate>
- (instancetype)initWithClicked:(void (^)(void))clicked;
@end

@implementation KelvoNotificationPresenter {
    void (^clicked_)(void);
}

- (instancetype)initWithClicked:(void (^)(void))clicked
{
    if ((self = [super init])) {
        clicked_ = [clicked copy];
    }
    return self;
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))completionHandler
{
    Q_UNUSED(center)
    Q_UNUSED(notification)
    completionHandler(UNNotificationPresentationOptionBanner | UNNotificationPresentationOptionList);
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))completionHandler
{
    // The notifications have no actions, so a response is a click.
    Q_UNUSED(center)
    Q_UNUSED(response)
    dispatch_async(dispatch_get_main_queue(), clicked_);
    completionHandler();
}

@end

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

AuthorizationStatus fromSystem(UNAuthorizationStatus status)
{
    switch (status) {
    case UNAuthorizationStatusAuthorized:
    case UNAuthorizationStatusProvisional: return AuthorizationStatus::authorized;
    case UNAuthorizationStatusDenied: return AuthorizationStatus::denied;
    default: return AuthorizationStatus::notDetermined;
    }
}

} // namespace

// Owns the delegate, to which the center keeps only a weak reference.
class UserNotificationCenter::Presentation
{
public:
    explicit Presentation(UserNotificationCenter *center)
    {
        const QPointer<UserNotificationCenter> owner(center);
        presenter_ = [[KelvoNotificationPresenter alloc] initWithClicked:^{
            if (owner) {
                Q_EMIT owner->activated();
            }
        }];
        UNUserNotificationCenter.currentNotificationCenter.delegate = presenter_;
    }
    ~Presentation() { UNUserNotificationCenter.currentNotificationCenter.delegate = nil; }
    Presentation(const Presentation &) = delete;
    Presentation &operator=(const Presentation &) = delete;

private:
    KelvoNotificationPresenter *presenter_ = nil;
};

UserNotificationCenter::UserNotificationCenter()
{
    if (canServeThisProcess()) {
        presentation_ = std::make_unique<Presentation>(this);
    }
}

UserNotificationCenter::~UserNotificationCenter() = default;

bool UserNotificationCenter::canServeThisProcess() const
{
    // Without a bundle identifier, the first use of the system's center terminates the process.
    return NSBundle.mainBundle.bundleIdentifier != nil;
}

// The system calls both completion handlers on its own queue. The futures finish on the main thread.

QFuture<AuthorizationStatus> UserNotificationCenter::authorizationStatus()
{
    const auto promise = std::make_shared<QPromise<AuthorizationStatus>>();
    promise->start();
    const auto answered = ^(UNNotificationSettings *settings) {
        const AuthorizationStatus status = fromSystem(settings.authorizationStatus);
        dispatch_async(dispatch_get_main_queue(), ^{
            promise->addResult(status);
            promise->finish();
        });
    };
    [UNUserNotificationCenter.currentNotificationCenter getNotificationSettingsWithCompletionHandler:answered];
    return promise->future();
}

QFuture<QString> UserNotificationCenter::turnedOffIn()
{
    return authorizationStatus().then([](AuthorizationStatus status) {
        return status == AuthorizationStatus::denied ? u"System Settings › Notifications"_s : QString();
    });
}

QFuture<void> UserNotificationCenter::requestAuthorization()
{
    const auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    const auto answered = ^(BOOL, NSError *) { dispatch_async(dispatch_get_main_queue(), ^{ promise->finish(); }); };
    [UNUserNotificationCenter.currentNotificationCenter
        requestAuthorizationWithOptions:UNAuthorizationOptionAlert | UNAuthorizationOptionSound
                      completionHandler:answered];
    return promise->future();
}

void UserNotificationCenter::add(const LocalNotification &notification)
{
    UNMutableNotificationContent *content = [[UNMutableNotificationContent alloc] init];
    content.title = notification.title.toNSString();
    content.body = notification.body.toNSString();
    content.sound = nil;
    UNNotificationRequest *request = [UNNotificationRequest requestWithIdentifier:notification.identifier.toNSString()
                                                                          content:content
                                                                          trigger:nil];
    [UNUserNotificationCenter.currentNotificationCenter addNotificationRequest:request withCompletionHandler:nil];
}

} // namespace kelvo
