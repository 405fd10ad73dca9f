#include "windows/QuickViewsPlugin.h"

#include "windows/QuickViews.h"

namespace kelvo {

std::unique_ptr<Views> QuickViewsPlugin::make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                              Platform &platform)
{
    return QuickViews::make(store, settings, notifier, platform);
}

} // namespace kelvo
