#pragma once

#include "menubar/Views.h"

namespace kelvo {

/// Finds the views library. Call this at the start of the program: when a later version replaces the library, this
/// program still needs its own.
void findViews();

/// The ViewsFactory of the installed program. Loads the views library at the first call; the library stays loaded. When
/// the library belongs to another version of the program, it is not loaded. Then, and when the library or a module that it
/// needs is missing or cannot be loaded, prints a warning and returns null.
std::unique_ptr<Views> loadViews(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                 Platform &platform);

} // namespace kelvo
