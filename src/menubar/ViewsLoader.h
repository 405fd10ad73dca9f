#pragma once

#include "menubar/Views.h"

namespace kelvo {

/// A ViewsFactory: makes the views of the library that is installed with the program. The library is loaded at the first
/// call and stays loaded. Where it is missing or does not fit, prints one warning and returns null.
std::unique_ptr<Views> loadViews(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                 Platform &platform);

} // namespace kelvo
