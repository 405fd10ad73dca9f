#include "platform/linux/XdgLoginItem.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const QString childFlag = u"--child"_s;

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool place(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).absolutePath()) && file.open(QIODevice::WriteOnly)
        && file.write(bytes) == bytes.size();
}

bool placeProgram(const QString &path)
{
    return place(path, "#!/bin/sh\n") && QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
}

QByteArray valueOf(const QByteArray &entry, const QByteArray &key)
{
    for (const QByteArray &line : entry.split('\n')) {
        if (line.startsWith(key + '='))
            return line.mid(key.size() + 1);
    }
    return {};
}

/// Removes the escapes of a string in a desktop file.
QByteArray unescaped(const QByteArray &value)
{
    QByteArray text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value.at(i) != '\\') {
            text += value.at(i);
            continue;
        }
        switch (const char next = value.at(++i)) {
        case 's': text += ' '; break;
        case 'n': text += '\n'; break;
        case 't': text += '\t'; break;
        case 'r': text += '\r'; break;
        default: text += next;
        }
    }
    return text;
}

/// Returns the program that an Exec line starts: removes escapes, then quotes, then field codes, as a session does.
QString programOf(const QByteArray &exec)
{
    const QByteArray line = unescaped(exec);
    QByteArray word;
    bool isQuoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const char byte = line.at(i);
        if (byte == '"')
            isQuoted = !isQuoted;
        else if (!isQuoted && QByteArrayView(" \t\n'\\><~|&;$*?#()`").contains(byte))
            return u"unquoted, though reserved: "_s + QLatin1Char(byte);
        else if (isQuoted && QByteArrayView("`$").contains(byte))
            return u"not escaped: "_s + QLatin1Char(byte);
        else if (byte == '\\' || byte == '%')
            word += line.at(++i);
        else
            word += byte;
        if (byte == '%' && line.at(i) != '%')
            return u"a field code"_s;
    }
    return isQuoted ? u"an open quote"_s : QFile::decodeName(word);
}

} // namespace

class XdgLoginItemTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> root_;
    QStringList configDirs_;
    QString userFile_;
    QString systemFile_;
    QString lastSystemFile_;
    QString program_;

    XdgLoginItem item() const { return XdgLoginItem(program_, configDirs_); }
    /// An entry that starts the program.
    QByteArray starting() const
    {
        return "[Desktop Entry]\nType=Application\nExec=" + QFile::encodeName(program_) + '\n';
    }
    QStringList autostartEntries() const
    {
        const QDir autostart(configDirs_.at(0) + u"/autostart"_s);
        return autostart.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        root_ = std::make_unique<QTemporaryDir>();
        QVERIFY(root_->isValid());
        configDirs_ = {root_->filePath(u"home/.config"_s), root_->filePath(u"etc/xdg-first"_s),
                       root_->filePath(u"etc/xdg"_s)};
        const QString name = u"/autostart/app.kelvo.Kelvo.desktop"_s;
        userFile_ = configDirs_.at(0) + name;
        systemFile_ = configDirs_.at(1) + name;
        lastSystemFile_ = configDirs_.at(2) + name;
        program_ = root_->filePath(u"opt/kelvo"_s);
        QVERIFY(placeProgram(program_));
        QVERIFY(placeProgram(program_ + u" two"_s));
        QVERIFY(place(program_ + u".txt"_s, "no program"));
    }

    // MARK: reading

    void readsWhetherAFileStartsTheProgram_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("expected");
        const auto row = [](const char *name, const char *bytes, bool expected) {
            QTest::newRow(name) << QByteArray(bytes) << expected;
        };
        row("plain", "[Desktop Entry]\nType=Application\nExec=@\n", true);
        row("not hidden", "[Desktop Entry]\nType=Application\nExec=@\nHidden=false\n", true);
        row("hidden", "[Desktop Entry]\nType=Application\nExec=@\nHidden=true\n", false);
        row("on in GNOME", "[Desktop Entry]\nType=Application\nExec=@\nX-GNOME-Autostart-enabled=true\n", true);
        row("off in GNOME", "[Desktop Entry]\nType=Application\nExec=@\nX-GNOME-Autostart-enabled=false\n", false);
        row("blanks around the equals sign", "[Desktop Entry]\nType = Application\nExec = @\nHidden = true \n", false);
        row("carriage returns", "[Desktop Entry]\r\nType=Application\r\nExec=@\r\n", true);
        row("commented out", "[Desktop Entry]\nType=Application\nExec=@\n#Hidden=true\n", true);
        row("hidden in another group", "[Desktop Entry]\nType=Application\nExec=@\n[Desktop Action x]\nHidden=true\n",
            true);
        row("another type", "[Desktop Entry]\nType=Link\nExec=@\n", false);
        row("no type", "[Desktop Entry]\nExec=@\n", false);
        row("no group", "Type=Application\nExec=@\n", false);
        row("empty", "", false);
        row("garbage", "\xff\xfe=[\n]]==\n", false);
        row("quoted", "[Desktop Entry]\nType=Application\nExec=\"@\"\n", true);
        row("an escaped space in quotes", "[Desktop Entry]\nType=Application\nExec=\"@\\stwo\"\n", true);
        row("with arguments", "[Desktop Entry]\nType=Application\nExec=@ -style fusion\n", true);
        row("a program in the path", "[Desktop Entry]\nType=Application\nExec=sh\n", true);
        row("a program not in the path", "[Desktop Entry]\nType=Application\nExec=kelvo-that-is-not-here\n", false);
        row("a program that has moved", "[Desktop Entry]\nType=Application\nExec=\"@-moved\"\n", false);
        row("a file that is no program", "[Desktop Entry]\nType=Application\nExec=@.txt\n", false);
        row("a directory", "[Desktop Entry]\nType=Application\nExec=/usr/bin\n", false);
        row("no program", "[Desktop Entry]\nType=Application\n", false);
        QTest::newRow("a zero byte in the program") << "[Desktop Entry]\nType=Application\nExec=@\0\n"_ba << false;
        row("an open quote and an escape at the end", "[Desktop Entry]\nType=Application\nExec=\"@\\\n", false);
    }

    void readsWhetherAFileStartsTheProgram()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, expected);
        QVERIFY(!item().isEnabled());
        bytes.replace('@', QFile::encodeName(program_));
        QVERIFY(place(userFile_, bytes));
        QCOMPARE(item().isEnabled(), expected);
    }

    void readsTheStateOnEachCall()
    {
        const XdgLoginItem one = item();
        QVERIFY(!one.isEnabled());
        QVERIFY(place(userFile_, starting()));
        QVERIFY(one.isEnabled());
        QVERIFY(QFile::remove(userFile_));
        QVERIFY(!one.isEnabled());
    }

    void theUsersFileOverridesTheSystems()
    {
        QVERIFY(place(lastSystemFile_, starting()));
        QVERIFY(item().isEnabled());
        QVERIFY(place(systemFile_, "[Desktop Entry]\nType=Application\nHidden=true\n"));
        QVERIFY(!item().isEnabled());
        QVERIFY(place(userFile_, starting()));
        QVERIFY(item().isEnabled());
        QVERIFY(place(userFile_, "[Desktop Entry]\nType=Application\nHidden=true\n"));
        QVERIFY(QFile::remove(systemFile_));
        QVERIFY(!item().isEnabled());
    }

    // MARK: registering

    void registersInTheUsersDirectory()
    {
        QVERIFY(item().registerItem());
        QVERIFY(item().isEnabled());
        const QByteArray entry = contents(userFile_);
        QVERIFY(entry.startsWith("[Desktop Entry]\n"));
        QCOMPARE(valueOf(entry, "Type"), "Application"_ba);
        QCOMPARE(valueOf(entry, "Name"), "Kelvo"_ba);
        QVERIFY(!valueOf(entry, "Comment").isEmpty());
        QCOMPARE(valueOf(entry, "Icon"), "app.kelvo.Kelvo"_ba);
        QCOMPARE(programOf(valueOf(entry, "Exec")), program_);
        QCOMPARE(autostartEntries(), QStringList{u"app.kelvo.Kelvo.desktop"_s});
        const auto all = QFile::ReadOther | QFile::ReadGroup | QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser
            | QFile::WriteUser;
        QCOMPARE(QFile::permissions(userFile_), all);
    }

    void everyPathIsQuotedCorrectly_data()
    {
        QTest::addColumn<QString>("path");
        const QStringList paths{u"/usr/bin/kelvo"_s,
                                u"/home/a user/My Programs/kelvo"_s,
                                u"/odd/\"quoted\"/kelvo"_s,
                                u"/odd/$HOME/`id`/kelvo"_s,
                                u"/odd/back\\slash\\\\twice\\n/kelvo"_s,
                                u"/odd/100%/%U/kelvo"_s,
                                u"/odd/it's;&|<>*?#(~)/kelvo"_s,
                                u"/odd/two\nlines\tand\rmore/kelvo"_s,
                                u"/ödd/世界/kelvo"_s,
                                u"/odd/ends in\\"_s};
        for (const QString &path : paths)
            QTest::newRow(qPrintable(path.toHtmlEscaped())) << path;
    }

    void everyPathIsQuotedCorrectly()
    {
        QFETCH(QString, path);
        path.prepend(root_->path());
        QVERIFY(placeProgram(path));
        XdgLoginItem odd(path, configDirs_);
        QVERIFY(odd.registerItem());
        QCOMPARE(programOf(valueOf(contents(userFile_), "Exec")), path);
        QVERIFY(odd.isEnabled());
    }

    void registeringAgainChangesNothing()
    {
        QVERIFY(item().registerItem());
        const QByteArray own = contents(userFile_) + "X-GNOME-Autostart-Delay=10\n";
        QVERIFY(place(userFile_, own));
        QVERIFY(item().registerItem());
        QCOMPARE(contents(userFile_), own);
    }

    void registeringReplacesAFileThatDoesNotStartThisProgram_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("an old place") << "[Desktop Entry]\nType=Application\nExec=\"/old/kelvo\"\n"_ba;
        QTest::newRow("hidden") << "[Desktop Entry]\nType=Application\nHidden=true\nExec=\"/opt/kelvo/bin/kelvo\"\n"_ba;
        QTest::newRow("off in GNOME") << "[Desktop Entry]\nType=Application\nX-GNOME-Autostart-enabled=false\n"_ba;
        QTest::newRow("garbage") << "\xff\xff"_ba;
    }

    void registeringReplacesAFileThatDoesNotStartThisProgram()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(place(userFile_, bytes));
        QVERIFY(item().registerItem());
        QVERIFY(item().isEnabled());
        QCOMPARE(programOf(valueOf(contents(userFile_), "Exec")), program_);
    }

    void aSymbolicLinkIsReplacedNotFollowed()
    {
        const QString target = root_->filePath(u"share/app.kelvo.Kelvo.desktop"_s);
        const QByteArray bytes = "[Desktop Entry]\nType=Application\nExec=sh\n";
        QVERIFY(place(target, bytes));
        QVERIFY(QDir().mkpath(configDirs_.at(0) + u"/autostart"_s));
        QVERIFY(QFile::link(target, userFile_));
        QVERIFY(item().isEnabled());
        QVERIFY(item().registerItem());
        QVERIFY(!QFileInfo(userFile_).isSymLink());
        QCOMPARE(programOf(valueOf(contents(userFile_), "Exec")), program_);
        QCOMPARE(contents(target), bytes);
    }

    void registeringAgainRepairsAnEntryWhoseProgramHasMoved()
    {
        QVERIFY(item().registerItem());
        QVERIFY(item().isEnabled());
        QVERIFY(QFile::remove(program_));
        QVERIFY(!item().isEnabled());
        program_ = root_->filePath(u"elsewhere/kelvo"_s);
        QVERIFY(placeProgram(program_));
        QVERIFY(!item().isEnabled());
        QVERIFY(item().registerItem());
        QVERIFY(item().isEnabled());
        QCOMPARE(programOf(valueOf(contents(userFile_), "Exec")), program_);
    }

    // MARK: removing

    void removesTheUsersFile()
    {
        QVERIFY(item().registerItem());
        QVERIFY(item().unregisterItem());
        QVERIFY(!item().isEnabled());
        QVERIFY(!QFile::exists(userFile_));
    }

    void removingAnAbsentFileSucceeds()
    {
        QVERIFY(item().unregisterItem());
        QVERIFY(!QFile::exists(configDirs_.at(0)));
    }

    void overridesASystemsFileWithAHiddenEntry()
    {
        const QByteArray bytes = starting();
        QVERIFY(place(lastSystemFile_, bytes));
        for (const bool hasOwn : {false, true}) {
            if (hasOwn)
                QVERIFY(item().registerItem());
            QVERIFY(item().isEnabled());
            QVERIFY(item().unregisterItem());
            QVERIFY(!item().isEnabled());
            QCOMPARE(valueOf(contents(userFile_), "Hidden"), "true"_ba);
            QCOMPARE(contents(lastSystemFile_), bytes);
        }
    }

    // MARK: files that cannot be written

    void aDirectoryInPlaceOfTheFileIsAFailure()
    {
        QVERIFY(QDir().mkpath(userFile_ + u"/full"_s));
        QVERIFY(!item().registerItem());
        QVERIFY(!item().isEnabled());
        QCOMPARE(autostartEntries(), QStringList{u"app.kelvo.Kelvo.desktop"_s});

        QVERIFY(place(systemFile_, starting()));
        QVERIFY(!item().unregisterItem());
        QVERIFY(item().isEnabled());
        QVERIFY(QFileInfo(userFile_ + u"/full"_s).isDir());
    }

    void aFileInPlaceOfTheDirectoryIsAFailure()
    {
        QVERIFY(place(configDirs_.at(0) + u"/autostart"_s, "in the way"));
        QVERIFY(!item().registerItem());
        QVERIFY(!item().isEnabled());
        QCOMPARE(contents(configDirs_.at(0) + u"/autostart"_s), "in the way"_ba);
    }

    void aReadOnlyDirectoryIsAFailure()
    {
        // /proc cannot be written, not even by root.
        XdgLoginItem there(program_, {u"/proc/self"_s});
        QVERIFY(!there.registerItem());
        QVERIFY(!there.isEnabled());
        QVERIFY(there.unregisterItem());
    }

    void aFullDiskKeepsTheOldFile()
    {
        const QByteArray old = "[Desktop Entry]\nType=Application\nExec=/old/kelvo\n";
        QVERIFY(place(userFile_, old));
        struct ::rlimit before = {};
        ::getrlimit(RLIMIT_FSIZE, &before);
        ::signal(SIGXFSZ, SIG_IGN);
        const struct ::rlimit small = {.rlim_cur = 64, .rlim_max = before.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
        const bool isRegistered = item().registerItem();
        ::setrlimit(RLIMIT_FSIZE, &before);
        ::signal(SIGXFSZ, SIG_DFL);
        QVERIFY(!isRegistered);
        QCOMPARE(contents(userFile_), old);
        QCOMPARE(autostartEntries(), QStringList{u"app.kelvo.Kelvo.desktop"_s});
    }

    // MARK: this session

    void usesTheDirectoriesAndTheProgramOfTheSession_data()
    {
        QTest::addColumn<QString>("image");
        QTest::addColumn<QString>("expected");
        QTest::newRow("installed") << QString() << QCoreApplication::applicationFilePath();
        QTest::newRow("AppImage") << u"/home/me/My Apps/Kelvo.AppImage"_s << u"/home/me/My Apps/Kelvo.AppImage"_s;
    }

    void usesTheDirectoriesAndTheProgramOfTheSession()
    {
        QFETCH(QString, image);
        QFETCH(QString, expected);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_s, configDirs_.at(0));
        environment.insert(u"XDG_CONFIG_DIRS"_s, configDirs_.at(1) + u':' + configDirs_.at(2));
        environment.remove(u"APPIMAGE"_s);
        if (!image.isEmpty())
            environment.insert(u"APPIMAGE"_s, image);
        const auto run = [&](const QString &action) {
            QProcess child;
            child.setProcessEnvironment(environment);
            child.start(QCoreApplication::applicationFilePath(), {childFlag, action});
            return child.waitForFinished() && child.exitStatus() == QProcess::NormalExit ? child.exitCode() : -1;
        };
        QCOMPARE(run(u"isEnabled"_s), 1);
        QVERIFY(place(lastSystemFile_, starting()));
        QCOMPARE(run(u"isEnabled"_s), 0);
        QCOMPARE(run(u"register"_s), 0);
        QCOMPARE(programOf(valueOf(contents(userFile_), "Exec")), expected);
    }
};

} // namespace kelvo

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1) == kelvo::childFlag) {
        kelvo::XdgLoginItem item;
        return (arguments.at(2) == u"register"_s ? item.registerItem() : item.isEnabled()) ? 0 : 1;
    }
    kelvo::XdgLoginItemTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_xdgloginitem.moc"
