#include "menubar/ViewsLoader.h"

#include "platform/Platform.h"

#include <QLibrary>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

/// The function that Q_PLUGIN_METADATA exports.
using PluginInstance = QObject *(*)();

const QString &libraryPath()
{
    static const auto path = openLibrary(u"kelvo-views.so"_s);
    return path;
}

void tellToRestart(NotificationCenter &center)
{
    if (center.canServeThisProcess()) {
        center.add({u"views"_s, u"Kelvo cannot open its windows"_s, u"Quit Kelvo and start it again."_s});
    }
}

} // namespace

void findViews()
{
    libraryPath();
}

std::unique_ptr<Views> loadViews(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                 Platform &platform)
{
    // Not a QPluginLoader, because that refuses the path of a file that was replaced.
    QLibrary library(libraryPath());
    const auto instance = reinterpret_cast<PluginInstance>(library.resolve("qt_plugin_instance"));
    auto *plugin = instance ? qobject_cast<ViewsPlugin *>(instance()) : nullptr;
    if (!plugin) {
        qWarning("The windows cannot be opened: %s", qPrintable(library.errorString()));
        tellToRestart(*platform.notificationCenter);
        return nullptr;
    }
    return plugin->make(store, settings, notifier, platform);
}

} // namespace kelvo
