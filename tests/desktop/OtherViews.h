#pragma once

#include "menubar/Views.h"

#include <QObject>

namespace kelvo {

/// A views library that tells when it is loaded. It is built with the metadata of another version of the program.
class OtherViews : public QObject, public ViewsPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "app.kelvo.ViewsPlugin")
    Q_INTERFACES(kelvo::ViewsPlugin)

public:
    /// Makes no views.
    std::unique_ptr<Views> make(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                Platform &platform) override;
};

} // namespace kelvo
