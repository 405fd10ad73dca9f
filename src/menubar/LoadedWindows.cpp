#include "menubar/LoadedWindows.h"

#include "platform/Platform.h"

#include <QCoreApplication>
#include <QPluginLoader>

namespace kelvo {

using namespace Qt::StringLiterals;

std::unique_ptr<Windows> loadWindows(StatusStore &store, SettingsStore &settings, NotifierStore &notifier,
                                     Platform &platform)
{
    // With its whole path: Qt would search in places that others may write to.
    const auto library = QCoreApplication::applicationDirPath() + u'/' + libraryFolder() + u"/kelvo-windows.so"_s;
    QPluginLoader loader(library);
    auto *plugin = qobject_cast<WindowsPlugin *>(loader.instance());
    if (!plugin) {
        qWarning("The windows cannot be opened: %s: %s", qPrintable(library), qPrintable(loader.errorString()));
        return nullptr;
    }
    return plugin->make(store, settings, notifier, platform);
}

} // namespace kelvo
