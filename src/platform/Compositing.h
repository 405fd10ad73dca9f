#pragma once

namespace kelvo {

/// Whether the desktop blends translucent windows with what is behind them, at this moment. True where it cannot be
/// asked.
bool isCompositing();

} // namespace kelvo
