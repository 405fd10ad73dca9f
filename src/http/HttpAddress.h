#pragma once

#include <QUrl>

namespace kelvo {

/// Whether `url` is a valid http or https address with a host.
bool isWebAddress(const QUrl &url);

/// Returns scheme, host and port of `url` with the path "/". Query, fragment and credentials are removed.
QUrl originOf(const QUrl &url);

} // namespace kelvo
