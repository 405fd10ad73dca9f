#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>

namespace kelvo {

/// Watches a file that programs write, replace, remove or create. While the file does not exist, its directory is watched
/// instead, if there is one; a directory changes more often.
class FileWatch : public QObject
{
    Q_OBJECT

public:
    explicit FileWatch(const QString &file);

    const QString &file() const { return file_; }

Q_SIGNALS:
    /// The file may have changed.
    void changed();

private:
    void watch();

    QString file_;
    QFileSystemWatcher watcher_;
};

} // namespace kelvo
