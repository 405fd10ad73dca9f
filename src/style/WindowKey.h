#pragma once

class QKeyEvent;

namespace kelvo {

/// The keyboard shortcuts of all windows: Ctrl+W closes, Ctrl+comma opens the settings, Ctrl+Q quits (on macOS, Cmd).
enum class WindowKey { none, close, settings, quit };

WindowKey windowKey(const QKeyEvent &event);

} // namespace kelvo
