#pragma once

class QKeyEvent;

namespace kelvo {

/// What the usual keys ask of any of this program's windows: Ctrl and W, comma or Q; on a Mac Cmd with them.
enum class WindowKey { none, close, settings, quit };

WindowKey windowKey(const QKeyEvent &event);

} // namespace kelvo
