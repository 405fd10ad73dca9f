#pragma once

#include "support/Stores.h"

namespace kelvo {

/// A state of the world in which the popover is pictured.
struct PopoverLook
{
    QString name;
    std::vector<ServiceID> watched;
    void (*bringAbout)(Stores &stores); ///< before the popover opens
    QString peeked = {};                ///< the service that the user looks at, if any
};

const std::vector<PopoverLook> &popoverLooks();

/// The services that the settings are pictured with, and the choices.
extern const std::vector<ServiceID> settingsLookServices;
void bringAboutSettingsLook(SettingsStore &settings);

} // namespace kelvo
