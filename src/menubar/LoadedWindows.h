#pragma once

#include "menubar/Windows.h"

namespace kelvo {

/// A WindowsFactory: the windows of the library that is installed with the program. It is loaded at the first call and
/// stays. Says so and gives nothing where it is missing or does not fit.
std::unique_ptr<Windows> loadWindows(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                     Platform &platform);

} // namespace kelvo
