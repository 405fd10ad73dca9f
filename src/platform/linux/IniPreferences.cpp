#include "platform/linux/IniPreferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// QSettings reads the file but does not write it. Its writer truncates the file when the disk is full (seen with
// Qt 6.4), waits for a lock that a killed process left behind, and removes comments.

namespace kelvo {

namespace {

/// While this object lives, new files and directories are accessible to the user only.
class PrivateFiles
{
public:
    PrivateFiles() = default;
    PrivateFiles(const PrivateFiles &) = delete;
    PrivateFiles &operator=(const PrivateFiles &) = delete;
    ~PrivateFiles() { ::umask(before_); }

private:
    mode_t before_ = ::umask(S_IRWXG | S_IRWXO);
};

/// Reads the file. Returns an empty array when it does not exist, and nullopt when it cannot be read or is not a
/// regular file.
std::optional<QByteArray> read(const QString &path)
{
    struct stat info = {};
    if (::stat(QFile::encodeName(path).constData(), &info) != 0)
        return errno == ENOENT ? std::optional(QByteArray()) : std::nullopt;
    QFile file(path);
    if (!S_ISREG(info.st_mode) || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray bytes = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(std::move(bytes)) : std::nullopt;
}

/// Replaces the content of the file atomically. Returns false, and leaves the file as it was, on failure.
bool replace(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // QSaveFile copies the mode of the file that it replaces. Restrict it before any content is written.
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    // commit() alone does not notice when the last buffer does not fit on the disk (seen with Qt 6.4).
    if (file.write(bytes) != bytes.size() || !file.flush() || ::fsync(file.handle()) != 0)
        return false;
    return file.commit();
}

/// Whether each line is one line to QSettings too: no line ends within quotes or with a backslash, and none contains a
/// carriage return.
bool haveSoundEnds(const QByteArrayList &lines)
{
    static const QRegularExpression sound(uR"re(^(?:[^;"\\]++|\\.|"(?:[^"\\]++|\\.)*+")*+(?:;.*)?$)re"_s,
                                          QRegularExpression::DotMatchesEverythingOption);
    return std::all_of(lines.begin(), lines.end(), [](const QByteArray &line) {
        const QString text = QString::fromLatin1(line).trimmed();
        return !text.contains(u'\r') && sound.match(text).hasMatch();
    });
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

/// Replaces the line of the key, or adds a line after the last top-level setting.
void put(QByteArrayList &lines, const QByteArray &key, const QByteArray &setting)
{
    bool isTopLevel = true;
    bool isThere = false;
    qsizetype end = -1;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArray line = lines.at(i).trimmed();
        if (line.startsWith('['))
            isTopLevel = line.mid(1, line.indexOf(']') - 1).trimmed().toLower() == "general";
        if (!isTopLevel || line.isEmpty())
            continue;
        end = i + 1;
        if (line.contains('=') && line.left(line.indexOf('=')).trimmed() == key) {
            lines[i] = setting;
            isThere = true;
        }
    }
    if (isThere)
        return;
    if (end >= 0) {
        lines.insert(end, setting);
        return;
    }
    if (!lines.isEmpty())
        lines.prepend({});
    lines.prepend(setting);
    lines.prepend("[General]"_ba);
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

bool isOfOurs(const QVariant &value)
{
    return !value.isValid() || value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QStringList;
}

} // namespace

IniPreferences::IniPreferences()
    : IniPreferences(defaultPath())
{
}

IniPreferences::IniPreferences(const QString &path)
    : path_(path)
{
    // Read the file only if it is a regular one: QSettings would block on a pipe or a device.
    if (!read(path))
        return;
    const QSettings file(path, QSettings::IniFormat);
    // Keys with other characters are not of this program, and could not be written as they are.
    static const QRegularExpression plain(uR"(\A[A-Za-z0-9]+\z)"_s);
    const QStringList keys = file.childKeys().filter(plain);
    for (const QString &key : keys) {
        if (const QVariant value = file.value(key); isOfOurs(value))
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
    const PrivateFiles scope;
    QDir().mkpath(QFileInfo(path_).absolutePath());

    const std::optional<QByteArray> before = read(path_);
    if (!before)
        return false;

    QByteArrayList lines = linesOf(*before);
    QStringList keys(unsaved_.begin(), unsaved_.end());
    if (!haveSoundEnds(lines)) {
        if (!replace(path_ + u".bak"_s, *before))
            return false;
        lines.clear();
        keys = values_.keys();
    }
    keys.sort();
    for (const QString &key : keys)
        put(lines, key.toUtf8(), settingLine(key, values_.value(key)));
    return replace(path_, lines.join('\n') + '\n');
}

} // namespace kelvo
