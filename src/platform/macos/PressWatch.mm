#include "platform/PressWatch.h"

#import <AppKit/AppKit.h>

namespace kelvo {

/// A monitor of the presses in other programs and in the menu bar. AppKit does not report the presses in this program's own
/// windows to it; these take the focus instead.
class PressWatch::Native
{
public:
    explicit Native(PressWatch *watch)
        : monitor_([NSEvent addGlobalMonitorForEventsMatchingMask:NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown
                            | NSEventMaskOtherMouseDown
                                                          handler:^(NSEvent *) { Q_EMIT watch->pressed(); }])
    {
    }
    ~Native()
    {
        if (monitor_) {
            [NSEvent removeMonitor:monitor_];
        }
    }
    Native(const Native &) = delete;
    Native &operator=(const Native &) = delete;

private:
    id monitor_;
};

PressWatch::PressWatch(QObject *parent)
    : QObject(parent)
{
}

PressWatch::~PressWatch() = default;

void PressWatch::start()
{
    native_ = std::make_unique<Native>(this);
}

void PressWatch::stop()
{
    native_.reset();
}

} // namespace kelvo
