#include "platform/NativeWindow.h"

#include <QWindow>

#import <AppKit/AppKit.h>

namespace kelvo::NativeWindow {

namespace {

/// The window of AppKit. Makes it if necessary.
NSWindow *native(QWindow &window)
{
    return ((__bridge NSView *)reinterpret_cast<void *>(window.winId())).window;
}

bool isPopover(NSWindow *window)
{
    return (window.styleMask & NSWindowStyleMaskNonactivatingPanel) != 0;
}

} // namespace

void makePopover(QWindow &window)
{
    NSWindow *panel = native(window);
    // Only an NSPanel, which Qt makes of a Qt::Tool, may have this style. It becomes key while another program stays active.
    panel.styleMask |= NSWindowStyleMaskNonactivatingPanel;
    panel.hidesOnDeactivate = NO;
    panel.level = NSPopUpMenuWindowLevel;
    panel.collectionBehavior = NSWindowCollectionBehaviorMoveToActiveSpace
        | NSWindowCollectionBehaviorFullScreenAuxiliary | NSWindowCollectionBehaviorTransient
        | NSWindowCollectionBehaviorIgnoresCycle;
}

void setDrawnShadow(QWindow &, const QMargins &)
{
    // The window is made without a shadow.
}

void bringToThisWorkspace(QWindow &window)
{
    native(window).collectionBehavior |= NSWindowCollectionBehaviorMoveToActiveSpace;
}

void activate(QWindow &window)
{
    NSWindow *target = native(window);
    if (isPopover(target)) {
        [target makeKeyAndOrderFront:nil];
        return;
    }
    // The windows have a fixed or a small range of sizes. Qt gives them a full-screen button; without this, so does AppKit.
    constexpr auto fullScreen = NSWindowCollectionBehaviorFullScreenPrimary
        | NSWindowCollectionBehaviorFullScreenAuxiliary;
    target.collectionBehavior = (target.collectionBehavior & ~fullScreen) | NSWindowCollectionBehaviorFullScreenNone;
    [NSApp activateIgnoringOtherApps:YES];
    [target makeKeyAndOrderFront:nil];
    [target orderFrontRegardless];
}

} // namespace kelvo::NativeWindow
