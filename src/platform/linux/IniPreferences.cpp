#include "platform/linux/IniPreferences.h"

#include "platform/linux/IniText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QStandardPaths>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;

// The file is written with neither QSettings nor QSaveFile. QSettings truncates it when the disk is full (seen with Qt 6.4),
// and waits for a lock that a killed process left behind. QSaveFile leaves a file with a random name behind when the process
// is killed.

namespace kelvo {

namespace {

Q_LOGGING_CATEGORY(logSettings, "kelvo.settings")

constexpr mode_t otherUsers = S_IRWXG | S_IRWXO;

/// How long a write waits for another process that writes.
constexpr auto lockPatience = 1000ms;
constexpr auto lockInterval = 10ms;

/// Keeps other processes of the program from writing the file while this object lives. The lock is one of the kernel on
/// the directory of the file: it ends with its process and leaves no file behind.
class WriteLock
{
public:
    explicit WriteLock(const QString &file)
        : directory_(
              ::open(QFile::encodeName(QFileInfo(file).absolutePath()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        for (auto waited = 0ms; waited <= lockPatience; waited += lockInterval) {
            isHeld_ = ::flock(directory_, LOCK_EX | LOCK_NB) == 0;
            isBusy_ = !isHeld_ && errno == EWOULDBLOCK;
            if (!isBusy_)
                return;
            std::this_thread::sleep_for(lockInterval);
        }
    }
    WriteLock(const WriteLock &) = delete;
    WriteLock &operator=(const WriteLock &) = delete;
    ~WriteLock() { ::close(directory_); }

    /// False when another process holds the lock, and on file systems without locks on directories.
    bool isHeld() const { return isHeld_; }
    /// Whether another process holds the lock.
    bool isBusy() const { return isBusy_; }
    /// Makes sure that files that were renamed in the directory are on disk.
    void sync() const { ::fsync(directory_); }

private:
    int directory_;
    bool isHeld_ = false;
    bool isBusy_ = false;
};

/// While this object lives, new directories are accessible to the user only.
class PrivateDirectories
{
public:
    PrivateDirectories() = default;
    PrivateDirectories(const PrivateDirectories &) = delete;
    PrivateDirectories &operator=(const PrivateDirectories &) = delete;
    ~PrivateDirectories() { ::umask(before_); }

private:
    mode_t before_ = ::umask(otherUsers);
};

/// Returns the file that the path leads to through symbolic links. It need not exist.
QString followed(QString path)
{
    constexpr int maximumLinks = 40;
    for (int i = 0; i < maximumLinks && QFileInfo(path).isSymLink(); ++i)
        path = QFileInfo(path).symLinkTarget();
    return path;
}

bool isOpenToOthers(const QString &path)
{
    struct stat info = {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 && (info.st_mode & otherUsers) != 0;
}

/// Reads the file, and takes it from other users if it was made by hand. Returns an empty array when it does not exist, and
/// nullopt when it cannot be read or is not a regular file.
std::optional<QByteArray> read(const QString &path)
{
    struct stat info = {};
    if (::stat(QFile::encodeName(path).constData(), &info) != 0)
        return errno == ENOENT ? std::optional(QByteArray()) : std::nullopt;
    QFile file(path);
    if (!S_ISREG(info.st_mode) || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    if ((info.st_mode & otherUsers) != 0)
        ::fchmod(file.handle(), info.st_mode & S_IRWXU);
    QByteArray bytes = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(std::move(bytes)) : std::nullopt;
}

QString unfinished(const QString &file)
{
    return file + u".unfinished"_s;
}

/// Removes what a process that was killed while it wrote the file has left.
void removeUnfinished(const QString &file)
{
    if (!QFile::exists(unfinished(file)))
        return;
    if (const WriteLock lock(file); !lock.isBusy())
        QFile::remove(unfinished(file));
}

/// Replaces the content of the file atomically. Returns false, and leaves the file as it was, on failure.
bool replace(const QString &file, const QByteArray &bytes, const WriteLock &lock)
{
    QFile next(unfinished(file));
    // Without a lock it may be one that another process is writing.
    if (lock.isHeld())
        next.remove();
    if (!next.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                   QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        return false;
    const bool isWritten = next.write(bytes) == bytes.size() && ::fsync(next.handle()) == 0;
    if (!isWritten
        || ::rename(QFile::encodeName(next.fileName()).constData(), QFile::encodeName(file).constData()) != 0) {
        next.remove();
        return false;
    }
    lock.sync();
    return true;
}

QString defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/Kelvo/Kelvo.conf"_s;
}

} // namespace

IniPreferences::IniPreferences()
    : IniPreferences(defaultPath())
{
}

IniPreferences::IniPreferences(const QString &path)
    : path_(path)
{
    removeUnfinished(followed(path));
    const std::optional<QByteArray> bytes = read(path);
    if (!bytes)
        return;
    if (isOpenToOthers(path))
        qCWarning(logSettings).noquote() << "Other users can read the settings in" << path;
    values_ = IniText(*bytes).settings();
}

std::optional<bool> IniPreferences::boolean(const QString &key) const
{
    const QString answer = text(key).value_or(QString()).toLower();
    if (answer == u"true" || answer == u"1")
        return true;
    if (answer == u"false" || answer == u"0")
        return false;
    return std::nullopt;
}

std::optional<int> IniPreferences::integer(const QString &key) const
{
    bool isNumber = false;
    const int number = text(key).value_or(QString()).toInt(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<QString> IniPreferences::text(const QString &key) const
{
    const QStringList words = values_.value(key);
    return words.isEmpty() ? std::nullopt : std::optional(words.join(u','));
}

std::optional<QStringList> IniPreferences::texts(const QString &key) const
{
    const auto words = values_.constFind(key);
    if (words == values_.constEnd())
        return std::nullopt;
    return *words == QStringList(QString()) ? QStringList() : *words;
}

void IniPreferences::setBoolean(const QString &key, bool value)
{
    store(key, {value ? u"true"_s : u"false"_s});
}

void IniPreferences::setInteger(const QString &key, int value)
{
    store(key, {QString::number(value)});
}

void IniPreferences::setText(const QString &key, const QString &value)
{
    store(key, {value});
}

void IniPreferences::setTexts(const QString &key, const QStringList &value)
{
    store(key, value);
}

void IniPreferences::store(const QString &key, const QStringList &words)
{
    if (const auto known = values_.constFind(key); known != values_.constEnd() && *known == words)
        return;
    values_.insert(key, words);
    unsaved_.insert(key);
    if (save())
        unsaved_.clear();
}

bool IniPreferences::save() const
{
    const PrivateDirectories scope;
    QDir().mkpath(QFileInfo(path_).absolutePath());
    const QString file = followed(path_);
    const WriteLock lock(file);
    const std::optional<QByteArray> before = read(file);
    if (lock.isBusy() || !before)
        return false;

    IniText text(*before);
    // A file that has vanished or lost its content gets all settings.
    QStringList keys = text.settings().isEmpty() ? values_.keys() : unsaved_.values();
    keys.sort();
    for (const QString &key : std::as_const(keys))
        text.put(key, values_.value(key));
    return replace(file, text.bytes(), lock);
}

} // namespace kelvo
