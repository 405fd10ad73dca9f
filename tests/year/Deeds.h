#pragma once

#include "model/ServiceID.h"

#include <QString>

#include <vector>

namespace kelvo {

/// What the program does that others notice.
struct Deeds
{
    struct Alert
    {
        QString title;
        QString body;
        bool operator==(const Alert &) const = default;
    };
    struct Post
    {
        QString address;
        QString text;
        QString chat; ///< empty for Slack
        bool operator==(const Post &) const = default;
    };

    std::vector<ServiceID> reads;
    std::vector<ServiceID> probes;
    std::vector<Alert> alerts;
    std::vector<Post> posts;
    int aborts = 0; ///< how often it gave up what was open

    bool operator==(const Deeds &) const = default;
};

} // namespace kelvo
