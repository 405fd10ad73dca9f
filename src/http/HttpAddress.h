#pragma once

#include <QUrl>

namespace kelvo {

/// Whether `url` is a complete http or https address.
bool isWebAddress(const QUrl &url);

/// Scheme, host and port of `url`, with the path "/": no path, query, fragment or credentials of it.
QUrl originOf(const QUrl &url);

} // namespace kelvo
