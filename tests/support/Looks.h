#pragma once

#include "support/Stores.h"

namespace kelvo {

/// A state in which pictures of the popover are taken.
struct PopoverLook
{
    QString name;
    std::vector<ServiceID> watched;
    void (*bringAbout)(Stores &stores); ///< sets the state up; called before the popover opens
    QString peeked = {};                ///< the service that the user peeks at; may be empty
};

const std::vector<PopoverLook> &popoverLooks();

/// The watched services and the settings with which pictures of the settings window are taken.
extern const std::vector<ServiceID> settingsLookServices;
void bringAboutSettingsLook(SettingsStore &settings);

} // namespace kelvo
