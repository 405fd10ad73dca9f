#include "menubar/ViewsLoader.h"

#include "platform/Platform.h"

#include <QCoreApplication>
#include <QPluginLoader>

namespace kelvo {

using namespace Qt::StringLiterals;

std::unique_ptr<Views> loadViews(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                 Platform &platform)
{
    // An absolute path, because Qt would otherwise search directories that other users may be able to write to.
    const auto library = QCoreApplication::applicationDirPath() + u'/' + libraryFolder() + u"/kelvo-views.so"_s;
    QPluginLoader loader(library);
    auto *plugin = qobject_cast<ViewsPlugin *>(loader.instance());
    if (!plugin) {
        qWarning("The windows cannot be opened: %s: %s", qPrintable(library), qPrintable(loader.errorString()));
        return nullptr;
    }
    return plugin->make(store, settings, notifier, platform);
}

} // namespace kelvo
