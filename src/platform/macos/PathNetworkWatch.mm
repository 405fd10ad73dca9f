#include "platform/macos/PathNetworkWatch.h"

#include <QPointer>

#import <Network/Network.h>

namespace kelvo {

/// Owns the path monitor. Its update handler runs on the main queue: once for the current path, then for every change.
class PathNetworkWatch::Monitor
{
public:
    explicit Monitor(PathNetworkWatch *watch)
        : monitor_(nw_path_monitor_create())
    {
        // An update can still arrive after the monitor is cancelled.
        const QPointer<PathNetworkWatch> guard(watch);
        __block nw_path_t former = nil;
        nw_path_monitor_set_queue(monitor_, dispatch_get_main_queue());
        nw_path_monitor_set_update_handler(monitor_, ^(nw_path_t path) {
            const bool appeared = former && !nw_path_is_equal(former, path)
                && nw_path_get_status(path) == nw_path_status_satisfied;
            former = path;
            if (appeared && guard) {
                Q_EMIT guard->changed();
            }
        });
        nw_path_monitor_start(monitor_);
    }

    ~Monitor() { nw_path_monitor_cancel(monitor_); }

    Monitor(const Monitor &) = delete;
    Monitor &operator=(const Monitor &) = delete;

private:
    nw_path_monitor_t monitor_;
};

PathNetworkWatch::PathNetworkWatch()
    : monitor_(std::make_unique<Monitor>(this))
{
}

PathNetworkWatch::~PathNetworkWatch() = default;

} // namespace kelvo
