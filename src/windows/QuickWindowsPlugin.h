#pragma once

#include "menubar/Windows.h"

#include <QObject>

namespace kelvo {

/// The entry to the library that the program loads at the first need of a window.
class QuickWindowsPlugin : public QObject, public WindowsPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "app.kelvo.WindowsPlugin")
    Q_INTERFACES(kelvo::WindowsPlugin)

public:
    std::unique_ptr<Windows> make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                  Platform &platform) override;
};

} // namespace kelvo
