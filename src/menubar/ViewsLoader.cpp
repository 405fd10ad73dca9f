#include "menubar/ViewsLoader.h"

#include "Version.h"
#include "platform/Platform.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

/// The function that Q_PLUGIN_METADATA exports.
using PluginInstance = QObject *(*)();

/// The views library as it was at the start of the program.
struct ViewsLibrary
{
    QString path;
    QString version; ///< of the program that it was built with; empty if the file is missing or not a views library
};

ViewsLibrary openViewsLibrary()
{
    const auto path = openLibrary(u"kelvo-views"_s);
    const auto versions = QPluginLoader(path).metaData().value("KelvoVersion"_L1).toArray();
    return {path, versions.at(0).toString()};
}

const ViewsLibrary &viewsLibrary()
{
    static const auto library = openViewsLibrary();
    return library;
}

/// Empty if the library may be loaded. The library uses the classes of the program that it was built with.
QString reasonForRefusal(const QString &libraryVersion)
{
    if (libraryVersion == QLatin1StringView(version)) {
        return {};
    }
    return libraryVersion.isEmpty() ? u"the library kelvo-views is missing or damaged"_s
                                    : u"the library kelvo-views is of version %1, but Kelvo is of version %2"_s.arg(
                                          libraryVersion, QLatin1StringView(version));
}

ViewsPlugin *loadPlugin()
{
    if (const auto reason = reasonForRefusal(viewsLibrary().version); !reason.isEmpty()) {
        qWarning("The windows cannot be opened: %s", qPrintable(reason));
        return nullptr;
    }
    // Not a QPluginLoader, because that refuses the path of a file that was replaced.
    QLibrary library(viewsLibrary().path);
    const auto instance = reinterpret_cast<PluginInstance>(library.resolve("qt_plugin_instance"));
    auto *plugin = instance ? qobject_cast<ViewsPlugin *>(instance()) : nullptr;
    if (!plugin) {
        qWarning("The windows cannot be opened: %s", qPrintable(library.errorString()));
    }
    return plugin;
}

} // namespace

void findViews()
{
    viewsLibrary();
}

std::unique_ptr<Views> loadViews(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                 Platform &platform)
{
    auto *plugin = loadPlugin();
    return plugin ? plugin->make(store, settings, notifier, platform) : nullptr;
}

} // namespace kelvo
