#include "windows/QuickWindowsPlugin.h"

#include "windows/QuickWindows.h"

namespace kelvo {

std::unique_ptr<Windows> QuickWindowsPlugin::make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                                  Platform &platform)
{
    return QuickWindows::make(store, settings, notifier, platform);
}

} // namespace kelvo
