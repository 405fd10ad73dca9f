#pragma once

namespace kelvo {

/// Whether the desktop currently blends translucent windows with what is behind them. True on platforms where this
/// cannot be queried.
bool isCompositing();

} // namespace kelvo
