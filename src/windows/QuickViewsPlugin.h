#pragma once

#include "menubar/Views.h"

#include <QObject>

namespace kelvo {

/// The plugin object of the views library, which the program loads when the first view opens.
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
