#include "platform/macos/AquaAppearance.h"

#include "platform/macos/DarkAqua.h"
#include "platform/macos/NotificationObserver.h"

#import <AppKit/AppKit.h>

// Calls a block when the effective appearance of the application or of a view changes.
@interface KelvoAppearanceObserver : NSObject
- (instancetype)initWithObject:(NSObject<NSAppearanceCustomization> *)object changed:(void (^)(void))changed;
@property (readonly) NSAppearance *appearance;
@end

@implementation KelvoAppearanceObserver {
    NSObject<NSAppearanceCustomization> *object_;
    void (^changed_)(void);
}

- (instancetype)initWithObject:(NSObject<NSAppearanceCustomization> *)object changed:(void (^)(void))changed
{
    if ((self = [super init])) {
        object_ = object;
        changed_ = [changed copy];
        [object_ addObserver:self forKeyPath:@"effectiveAppearance" options:0 context:nil];
    }
    return self;
}

- (void)dealloc
{
    [object_ removeObserver:self forKeyPath:@"effectiveAppearance"];
}

- (void)observeValueForKeyPath:(NSString *)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id> *)change
                       context:(void *)context
{
    Q_UNUSED(keyPath)
    Q_UNUSED(object)
    Q_UNUSED(change)
    Q_UNUSED(context)
    changed_();
}

- (NSAppearance *)appearance
{
    return object_.effectiveAppearance;
}

@end

namespace kelvo {

class AquaAppearance::Observers
{
public:
    explicit Observers(AquaAppearance *appearance)
        : changed_(^{ Q_EMIT appearance->changed(); })
        , application_([[KelvoAppearanceObserver alloc] initWithObject:NSApp changed:changed_])
        , displayOptions_(NSWorkspace.sharedWorkspace.notificationCenter,
                          NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification,
                          [appearance] { Q_EMIT appearance->changed(); })
    {
    }

    void followMenuBar(NSView *view)
    {
        menuBar_ = [[KelvoAppearanceObserver alloc] initWithObject:view changed:changed_];
        changed_();
    }

    NSAppearance *application() const { return application_.appearance; }
    NSAppearance *menuBar() const { return menuBar_ ? menuBar_.appearance : application(); }

private:
    void (^changed_)(void);
    KelvoAppearanceObserver *application_;
    KelvoAppearanceObserver *menuBar_ = nil;
    NotificationObserver displayOptions_;
};

AquaAppearance::AquaAppearance()
    : observers_(std::make_unique<Observers>(this))
{
}

AquaAppearance::~AquaAppearance() = default;

bool AquaAppearance::isDark() const
{
    return isDarkAqua(observers_->application());
}

bool AquaAppearance::panelIsDark() const
{
    return isDarkAqua(observers_->menuBar());
}

bool AquaAppearance::highContrast() const
{
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldIncreaseContrast;
}

bool AquaAppearance::reduceMotion() const
{
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
}

void AquaAppearance::followMenuBar(NSView *view)
{
    observers_->followMenuBar(view);
}

} // namespace kelvo
