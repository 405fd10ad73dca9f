#pragma once

#include "menubar/Views.h"

#include <QObject>

namespace kelvo {

/// The entry to the library that the program loads at the first need of a window.
class QuickViewsPlugin : public QObject, public ViewsPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "app.kelvo.ViewsPlugin")
    Q_INTERFACES(kelvo::ViewsPlugin)

public:
    std::unique_ptr<Views> make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                Platform &platform) override;
};

} // namespace kelvo
