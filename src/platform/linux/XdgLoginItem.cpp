#include "platform/linux/XdgLoginItem.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <cstdio>
#include <optional>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

using Entry = QHash<QByteArray, QByteArray>;

QString autostartFile(const QString &configDir)
{
    return configDir + u"/autostart/app.kelvo.Kelvo.desktop"_s;
}

/// Reads the [Desktop Entry] group of the file. Returns nullopt when the file cannot be read.
std::optional<Entry> readEntry(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;

    Entry entry;
    bool isInGroup = false;
    const QByteArrayList lines = file.readAll().split('\n');
    for (const QByteArray &each : lines) {
        const QByteArray line = each.trimmed();
        if (line.startsWith('['))
            isInGroup = line == "[Desktop Entry]";
        const auto equals = line.indexOf('=');
        if (isInGroup && equals > 0)
            entry.insert(line.left(equals).trimmed(), line.mid(equals + 1).trimmed());
    }
    return entry;
}

/// Returns the program of an Exec line: its first word, without the escapes of a string, the quotes and the doubled percent
/// signs.
QString programOf(const QByteArray &exec)
{
    QByteArray line;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        if (exec.at(i) != '\\' || i + 1 == exec.size()) {
            line += exec.at(i);
            continue;
        }
        switch (const char next = exec.at(++i)) {
        case 's': line += ' '; break;
        case 'n': line += '\n'; break;
        case 't': line += '\t'; break;
        case 'r': line += '\r'; break;
        default: line += next;
        }
    }
    QByteArray word;
    bool isQuoted = false;
    for (qsizetype i = 0; i < line.size() && (isQuoted || line.at(i) != ' '); ++i) {
        const char byte = line.at(i);
        if (byte == '"') {
            isQuoted = !isQuoted;
        } else if (i + 1 < line.size() && (byte == '%' || (isQuoted && byte == '\\'))) {
            word += line.at(++i);
        } else {
            word += byte;
        }
    }
    return QFile::decodeName(word);
}

bool isExecutable(const QString &program)
{
    if (program.isEmpty() || program.contains(QChar::Null)) {
        return false;
    }
    const QFileInfo file(program);
    return file.isAbsolute() ? file.isFile() && file.isExecutable()
                             : !QStandardPaths::findExecutable(program).isEmpty();
}

/// Whether a session starts the program of the entry. It does not when the program has moved.
bool startsAtLogin(const Entry &entry)
{
    return entry.value("Type") == "Application" && entry.value("Hidden") != "true"
        && entry.value("X-GNOME-Autostart-enabled") != "false" && isExecutable(programOf(entry.value("Exec")));
}

/// Returns the program as the first word of an Exec line: quoted, and then escaped like any string of a desktop file.
QByteArray execWord(const QString &program)
{
    QByteArray quoted;
    for (const char byte : QFile::encodeName(program)) {
        if (QByteArrayView("\"`$\\").contains(byte))
            quoted += '\\';
        quoted += byte;
        // A single percent sign would start a field code.
        if (byte == '%')
            quoted += '%';
    }
    quoted.replace('\\', "\\\\").replace('\n', "\\n").replace('\t', "\\t").replace('\r', "\\r");
    return '"' + quoted + '"';
}

QString runningProgram()
{
    // An AppImage mounts the program in a directory that exists only during this run, so register the image itself.
    const QString image = qEnvironmentVariable("APPIMAGE");
    return QDir::isAbsolutePath(image) ? image : QCoreApplication::applicationFilePath();
}

} // namespace

XdgLoginItem::XdgLoginItem()
    : XdgLoginItem(runningProgram(), QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation))
{
}

XdgLoginItem::XdgLoginItem(const QString &program, const QStringList &configDirs)
    : exec_(execWord(program))
    , userFile_(autostartFile(configDirs.first()))
{
    for (const QString &directory : configDirs.mid(1))
        systemFiles_.append(autostartFile(directory));
}

bool XdgLoginItem::isEnabled() const
{
    const std::optional<Entry> own = readEntry(userFile_);
    return own ? startsAtLogin(*own) : systemStartsIt();
}

bool XdgLoginItem::registerItem()
{
    const std::optional<Entry> own = readEntry(userFile_);
    if (own && startsAtLogin(*own) && own->value("Exec") == exec_)
        return true;
    return write("[Desktop Entry]\n"
                 "Type=Application\n"
                 "Name=Kelvo\n"
                 "Comment=Tells you when your AI tools are usable again\n"
                 "Icon=app.kelvo.Kelvo\n"
                 "Exec="
                 + exec_
                 + "\n"
                   "Terminal=false\n"
                   "X-GNOME-Autostart-enabled=true\n");
}

bool XdgLoginItem::unregisterItem()
{
    if (!isEnabled())
        return true;
    if (systemStartsIt())
        return write("[Desktop Entry]\nType=Application\nName=Kelvo\nHidden=true\n");
    return QFile::remove(userFile_);
}

/// Whether the system's files start the program for a user without a file. The first existing file decides.
bool XdgLoginItem::systemStartsIt() const
{
    for (const QString &file : systemFiles_) {
        if (const std::optional<Entry> entry = readEntry(file))
            return startsAtLogin(*entry);
    }
    return false;
}

/// Writes the user's file atomically. Returns false, and changes nothing, on failure. A symbolic link is replaced and
/// not followed, because its target may belong to another program.
bool XdgLoginItem::write(const QByteArray &content) const
{
    const QString directory = QFileInfo(userFile_).absolutePath();
    QDir().mkpath(directory);
    // The temporary name does not end in .desktop, so that a file left behind by a crash is not started at login.
    QTemporaryFile file(directory + u"/.app.kelvo.Kelvo.XXXXXX"_s);
    if (!file.open() || file.write(content) != content.size() || !file.flush() || ::fsync(file.handle()) != 0)
        return false;
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup
                        | QFileDevice::ReadOther);
    if (std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(userFile_).constData()) != 0)
        return false;
    file.setAutoRemove(false);
    return true;
}

} // namespace kelvo
