#include "platform/linux/FileWatch.h"

#include <QFileInfo>

namespace kelvo {

FileWatch::FileWatch(const QString &file)
    : file_(file)
{
    const auto onChange = [this] {
        watch();
        Q_EMIT changed();
    };
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, onChange);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, onChange);
    watch();
}

/// The watch of a file ends when the file is replaced, so this is called after each change.
void FileWatch::watch()
{
    const QFileInfo info(file_);
    const auto wanted = info.exists() ? file_ : info.absolutePath();
    const auto watched = watcher_.files() + watcher_.directories();
    if (watched.contains(wanted)) {
        return;
    }
    if (!watched.isEmpty()) {
        watcher_.removePaths(watched);
    }
    if (QFileInfo::exists(wanted)) {
        watcher_.addPath(wanted);
    }
}

} // namespace kelvo
