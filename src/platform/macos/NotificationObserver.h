#pragma once

#import <Foundation/Foundation.h>

#include <functional>

namespace kelvo {

/// Calls a function on the main thread for each notification with a given name, until this object is destroyed.
class NotificationObserver
{
public:
    NotificationObserver(NSNotificationCenter *center, NSNotificationName name, std::function<void()> call)
        : center_(center)
        , token_([center addObserverForName:name
                                     object:nil
                                      queue:NSOperationQueue.mainQueue
                                 usingBlock:^(NSNotification *) { call(); }])
    {
    }
    ~NotificationObserver() { [center_ removeObserver:token_]; }
    NotificationObserver(const NotificationObserver &) = delete;
    NotificationObserver &operator=(const NotificationObserver &) = delete;

private:
    NSNotificationCenter *center_;
    id<NSObject> token_;
};

} // namespace kelvo
