#include "platform/linux/IniPreferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>
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

// QSettings reads the file but does not write it. Its writer truncates the file when the disk is full (seen with
// Qt 6.4), waits for a lock that a killed process left behind, and removes comments. QSaveFile leaves a file with a random
// name behind when the process is killed.

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
    next.close();
    if (!isWritten
        || ::rename(QFile::encodeName(next.fileName()).constData(), QFile::encodeName(file).constData()) != 0) {
        next.remove();
        return false;
    }
    lock.sync();
    return true;
}

/// Whether no setting begins or ends within the line: it does not end within quotes or with a backslash, QSettings does
/// not see two lines in it, and it does not begin with a byte order mark, which hides a section.
bool isSound(const QByteArray &line)
{
    static const QRegularExpression sound(
        uR"re(^(?!\xef\xbb\xbf)(?:[^;"\\\r]++|\\[^\r]|"(?:[^"\\\r]++|\\[^\r])*+")*+(?:;[^\r]*)?$)re"_s,
        QRegularExpression::DotMatchesEverythingOption);
    return sound.match(QString::fromLatin1(line).trimmed()).hasMatch();
}

bool isHexDigit(QChar character)
{
    return character.isDigit() || (character.toLower() >= u'a' && character.toLower() <= u'f');
}

/// Quotes the text and escapes it as QSettings does.
QString quoted(const QString &text)
{
    // QSettings reads a leading @ as the start of a typed value, unless it is doubled.
    QString word = text.startsWith(u'@') ? u"\"@"_s : u"\""_s;
    bool followsNumber = false;
    for (const QChar character : text) {
        // A hexadecimal digit after an escape sequence would be read as part of it.
        const bool asNumber = character.category() == QChar::Other_Control || character == QChar::ByteOrderMark
            || (followsNumber && isHexDigit(character));
        if (asNumber) {
            word += u"\\x"_s + QString::number(character.unicode(), 16);
        } else {
            if (character == u'"' || character == u'\\')
                word += u'\\';
            word += character;
        }
        followsNumber = asNumber;
    }
    return word + u'"';
}

QString word(const QString &text)
{
    static const QRegularExpression plain(uR"(\A[A-Za-z0-9_.:/+-]+\z)"_s);
    return plain.match(text).hasMatch() ? text : quoted(text);
}

QByteArray settingLine(const QString &key, const QVariant &value)
{
    if (value.typeId() == QMetaType::QString)
        return (key + u'=' + word(value.toString())).toUtf8();
    QStringList words = value.toStringList();
    for (QString &each : words)
        each = word(each);
    return (key + u'=' + (words.isEmpty() ? u"@Invalid()"_s : words.join(u", "_s))).toUtf8();
}

/// Returns the indexes of the lines outside of all sections but [General], without empty ones.
QList<qsizetype> topLevel(const QByteArrayList &lines)
{
    QList<qsizetype> indexes;
    bool isTopLevel = true;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArray line = lines.at(i).trimmed();
        if (line.startsWith('[') && isSound(line))
            isTopLevel = line.mid(1, line.indexOf(']') - 1).trimmed().toLower() == "general";
        if (isTopLevel && !line.isEmpty())
            indexes.append(i);
    }
    return indexes;
}

/// Returns the key of a line as it stands there, and an empty array for a section, a comment and a line without a key.
QByteArray keyOf(const QByteArray &line)
{
    const QByteArray trimmed = line.trimmed();
    const bool isSetting = !trimmed.isEmpty() && !QByteArrayView("[;#").contains(trimmed.front());
    return isSetting ? trimmed.left(std::max<qsizetype>(trimmed.indexOf('='), 0)).trimmed() : QByteArray();
}

/// Replaces the line of the key, or adds a line after the last top-level setting.
void put(QByteArrayList &lines, const QByteArray &key, const QByteArray &setting)
{
    const QList<qsizetype> candidates = topLevel(lines);
    bool isThere = false;
    for (const qsizetype i : candidates) {
        if (keyOf(lines.at(i)) == key) {
            lines[i] = setting;
            isThere = true;
        }
    }
    if (isThere)
        return;
    if (!candidates.isEmpty()) {
        lines.insert(candidates.last() + 1, setting);
        return;
    }
    if (!lines.isEmpty())
        lines.prepend({});
    lines.prepend(setting);
    lines.prepend("[General]"_ba);
}

/// Whether no setting runs over several lines, and no key is escaped.
bool areSound(const QByteArrayList &lines)
{
    const QList<qsizetype> candidates = topLevel(lines);
    return std::all_of(lines.begin(), lines.end(), isSound)
        && std::none_of(candidates.begin(), candidates.end(),
                        [&](qsizetype i) { return keyOf(lines.at(i)).contains('%'); });
}

/// Makes comments of lines that are not sound, and of top-level settings with other keys than these.
void commentOut(QByteArrayList &lines, const QStringList &keys)
{
    const QList<qsizetype> candidates = topLevel(lines);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const bool isTopLevel = std::binary_search(candidates.begin(), candidates.end(), i);
        const QByteArray key = isTopLevel ? keyOf(lines.at(i)) : QByteArray();
        if (!isSound(lines.at(i)) || (!key.isEmpty() && !keys.contains(QString::fromUtf8(key))))
            lines[i] = "; " + lines[i].replace('\r', ' ');
    }
}

QByteArrayList linesOf(const QByteArray &bytes)
{
    constexpr QByteArrayView byteOrderMark("\xef\xbb\xbf");
    QByteArrayList lines = bytes.mid(bytes.startsWith(byteOrderMark) ? byteOrderMark.size() : 0).split('\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

QString defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/Kelvo/Kelvo.conf"_s;
}

bool isOfOurs(const QString &key, const QVariant &value)
{
    static const QRegularExpression plain(uR"(\A\w+\z)"_s);
    return plain.match(key).hasMatch()
        && (!value.isValid() || value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QStringList);
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
    // Read the file only if it is a regular one: QSettings would block on a pipe or a device.
    if (!read(path))
        return;
    if (isOpenToOthers(path))
        qCWarning(logSettings).noquote() << "Other users can read the settings in" << path;
    const QSettings file(path, QSettings::IniFormat);
    QStringList keys = file.childKeys();
    keys.removeAll(QString()); // of a line that starts with an equals sign
    for (const QString &key : std::as_const(keys)) {
        if (const QVariant value = file.value(key); isOfOurs(key, value))
            values_.insert(key, value);
    }
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
    const QVariant value = values_.value(key);
    if (value.typeId() == QMetaType::QString)
        return value.toString();
    const QStringList parts = value.toStringList();
    return parts.isEmpty() ? std::nullopt : std::optional(parts.join(u','));
}

std::optional<QStringList> IniPreferences::texts(const QString &key) const
{
    const auto value = values_.constFind(key);
    if (value == values_.constEnd())
        return std::nullopt;
    if (value->typeId() == QMetaType::QString)
        return value->toString().isEmpty() ? QStringList() : QStringList(value->toString());
    return value->toStringList();
}

void IniPreferences::setBoolean(const QString &key, bool value)
{
    store(key, value ? u"true"_s : u"false"_s);
}

void IniPreferences::setInteger(const QString &key, int value)
{
    store(key, QString::number(value));
}

void IniPreferences::setText(const QString &key, const QString &value)
{
    store(key, value);
}

void IniPreferences::setTexts(const QString &key, const QStringList &value)
{
    store(key, value);
}

void IniPreferences::store(const QString &key, const QVariant &value)
{
    if (const auto known = values_.constFind(key); known != values_.constEnd() && *known == value)
        return;
    values_.insert(key, value);
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

    QByteArrayList lines = linesOf(*before);
    // A file that has vanished or is damaged gets all settings.
    const bool isWhole = !lines.isEmpty() && areSound(lines);
    QStringList keys = isWhole ? unsaved_.values() : values_.keys();
    keys.sort();
    for (const QString &key : std::as_const(keys))
        put(lines, key.toUtf8(), settingLine(key, values_.value(key)));
    if (!isWhole)
        commentOut(lines, keys);
    return replace(file, lines.join('\n') + '\n', lock);
}

} // namespace kelvo
