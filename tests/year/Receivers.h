#pragma once

#include "Deeds.h"
#include "Random.h"

#include "http/HttpNetwork.h"

namespace kelvo {

/// Makes a network that records posts to Slack and Telegram instead of sending them. Some of them fail. All arguments must
/// outlive the session that uses it.
HttpNetwork receivers(std::vector<Deeds::Post> &posts, Random &random);

} // namespace kelvo
