#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

#include <stdexcept>

namespace kelvo {

/// A file in a temporary folder of its own, removed at the end.
class ScratchFile
{
public:
    ScratchFile(const QString &name, QByteArrayView bytes)
        : folder_(QStringLiteral("%1/%2").arg(root().path()).arg(++count_))
        , path_(folder_ + QLatin1Char('/') + name)
    {
        QFile file(path_);
        if (!QDir().mkpath(QFileInfo(path_).path())
            || !file.open(QIODevice::WriteOnly, QFile::ReadOwner | QFile::WriteOwner)
            || file.write(bytes.data(), bytes.size()) != bytes.size()) {
            throw std::runtime_error("no scratch file");
        }
    }
    ScratchFile(const ScratchFile &) = delete;
    ScratchFile &operator=(const ScratchFile &) = delete;
    ~ScratchFile() { QDir(folder_).removeRecursively(); }

    const QString &folder() const { return folder_; }
    const QString &path() const { return path_; }
    QByteArray content() const
    {
        QFile file(path_);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    static const QTemporaryDir &root()
    {
        static const QTemporaryDir root;
        return root;
    }

    inline static quint64 count_ = 0;

    QString folder_;
    QString path_;
};

} // namespace kelvo
