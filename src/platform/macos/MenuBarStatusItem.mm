#include "platform/macos/MenuBarStatusItem.h"

#include "platform/macos/DarkAqua.h"

#include <QImage>
#include <QMenu>
#include <QPixmap>

#import <AppKit/AppKit.h>

@interface KelvoStatusItemTarget : NSObject
- (instancetype)initWithClicked:(void (^)(NSEvent *event))clicked;
- (void)click:(id)sender;
@end

@implementation KelvoStatusItemTarget {
    void (^clicked_)(NSEvent *event);
}

- (instancetype)initWithClicked:(void (^)(NSEvent *event))clicked
{
    if ((self = [super init])) {
        clicked_ = [clicked copy];
    }
    return self;
}

- (void)click:(id)sender
{
    Q_UNUSED(sender)
    clicked_(NSApp.currentEvent);
}

@end

namespace kelvo {

namespace {

/// The side of the image in the menu bar, in points.
constexpr CGFloat imageSide = 18.0;

/// Draws the image with as many pixels as the bar has, in the form for the appearance of the bar. The bar draws it later and
/// repeatedly, so the block has a copy: of a reference it would copy only the address.
NSImage *nativeImage(StatusItemImage image)
{
    NSImage *native = [NSImage
         imageWithSize:NSMakeSize(imageSide, imageSide)
               flipped:NO
        drawingHandler:^BOOL(NSRect rect) {
            const QIcon &icon = isDarkAqua(NSAppearance.currentDrawingAppearance) ? image.onDarkBar : image.onLightBar;
            CGContextRef context = NSGraphicsContext.currentContext.CGContext;
            const CGSize pixels = CGContextConvertSizeToDeviceSpace(context, rect.size);
            const QSize size(qRound(qAbs(pixels.width)), qRound(qAbs(pixels.height)));
            CGImageRef drawn = icon.pixmap(size, 1.0).toImage().toCGImage();
            CGContextDrawImage(context, rect, drawn);
            CGImageRelease(drawn);
            return YES;
        }];
    [native setTemplate:NO];
    return native;
}

/// AppKit counts from the bottom of the first screen, Qt from its top.
QRect toQt(NSRect frame)
{
    const CGFloat height = NSScreen.screens.firstObject.frame.size.height;
    return QRectF(frame.origin.x, height - NSMaxY(frame), frame.size.width, frame.size.height).toRect();
}

bool isForMenu(NSEvent *event)
{
    return event.type == NSEventTypeRightMouseDown || (event.modifierFlags & NSEventModifierFlagControl) != 0;
}

} // namespace

class MenuBarStatusItem::Item
{
public:
    explicit Item(void (^clicked)(NSEvent *event))
        : target_([[KelvoStatusItemTarget alloc] initWithClicked:clicked])
        , item_([NSStatusBar.systemStatusBar statusItemWithLength:NSSquareStatusItemLength])
    {
        button().target = target_;
        button().action = @selector(click:);
        [button() sendActionOn:NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown];
    }
    ~Item() { [NSStatusBar.systemStatusBar removeStatusItem:item_]; }
    Item(const Item &) = delete;
    Item &operator=(const Item &) = delete;

    NSStatusBarButton *button() const { return item_.button; }

    /// The frame of the button on the screen, in Qt's coordinates. Empty while the bar has not placed the item yet or has no
    /// room for it; its window is then outside of all screens.
    QRect geometry() const
    {
        NSWindow *window = button().window;
        return window.screen ? toQt([window convertRectToScreen:[button() convertRect:button().bounds toView:nil]])
                             : QRect();
    }

    /// Opens the menu as the bar would. The bar would open it at every click if it were the menu of the item for good.
    void open(QMenu &menu)
    {
        item_.menu = menu.toNSMenu();
        [button() performClick:nil];
        item_.menu = nil;
    }

private:
    KelvoStatusItemTarget *target_;
    NSStatusItem *item_;
};

MenuBarStatusItem::MenuBarStatusItem() = default;

MenuBarStatusItem::~MenuBarStatusItem() = default;

void MenuBarStatusItem::setImage(const StatusItemImage &image, bool)
{
    image_ = image;
    if (item_) {
        item_->button().image = nativeImage(image_);
    }
}

void MenuBarStatusItem::setToolTip(const QString &text)
{
    toolTip_ = text;
    if (item_) {
        item_->button().toolTip = text.toNSString();
        item_->button().accessibilityLabel = text.toNSString();
    }
}

void MenuBarStatusItem::setMenu(QMenu *menu)
{
    menu_ = menu;
}

QRect MenuBarStatusItem::geometry() const
{
    return item_ ? item_->geometry() : QRect();
}

void MenuBarStatusItem::show()
{
    if (item_) {
        return;
    }
    const QPointer<MenuBarStatusItem> self(this);
    item_ = std::make_unique<Item>(^(NSEvent *event) {
        if (!self) {
            return;
        }
        if (!isForMenu(event)) {
            Q_EMIT self->activated(std::nullopt);
        } else if (self->menu_) {
            self->item_->open(*self->menu_);
        }
    });
    setImage(image_, false);
    setToolTip(toolTip_);
    Q_EMIT shown();
}

NSView *MenuBarStatusItem::view() const
{
    return item_ ? item_->button() : nil;
}

} // namespace kelvo
