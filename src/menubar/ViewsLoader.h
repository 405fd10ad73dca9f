#pragma once

#include "menubar/Views.h"

namespace kelvo {

/// The ViewsFactory of the installed program. Loads the views library at the first call; the library stays loaded.
/// Prints a warning and returns null when the library is missing or cannot be loaded.
std::unique_ptr<Views> loadViews(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                 Platform &platform);

} // namespace kelvo
