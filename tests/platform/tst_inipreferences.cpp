#include "platform/linux/IniPreferences.h"
#include "support/Expect.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <limits>

#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

constexpr uid_t nobody = 65534;

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool place(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

mode_t modeOf(const QString &path)
{
    struct stat info = {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_mode & 07777 : 0;
}

bool setMode(const QString &path, mode_t mode)
{
    return ::chmod(QFile::encodeName(path).constData(), mode) == 0;
}

/// Changes the owner of the file to the user of `asOrdinaryUser`.
bool giveAway(const QString &path)
{
    return ::geteuid() != 0 || ::chown(QFile::encodeName(path).constData(), nobody, nobody) == 0;
}

int inChild(const std::function<int()> &body)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(body());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

/// Runs `body` in a child process without root privileges, for which permission bits are effective.
int asOrdinaryUser(const std::function<int()> &body)
{
    return inChild([&] {
        if (::geteuid() == 0)
            EXPECT(::setgroups(0, nullptr) == 0 && ::setresgid(nobody, nobody, nobody) == 0
                   && ::setresuid(nobody, nobody, nobody) == 0);
        return body();
    });
}

/// Counts all events that are delivered during its lifetime.
class EventCounter : public QObject
{
public:
    EventCounter() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *) override
    {
        ++count;
        return false;
    }
    int count = 0;
};

} // namespace

class IniPreferencesTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> home_;
    QString path_;

    QString inHome(const QString &name) const { return home_->filePath(name); }

    /// Returns the preferences as the next start reads them.
    std::unique_ptr<IniPreferences> nextStart() const { return std::make_unique<IniPreferences>(path_); }

    QStringList filesInHome() const
    {
        return QDir(home_->path()).entryList({u"Kelvo*"_s}, QDir::Files | QDir::Hidden | QDir::System);
    }

    std::unique_ptr<IniPreferences> reading(const QByteArray &bytes)
    {
        place(path_, bytes);
        return std::make_unique<IniPreferences>(path_);
    }

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        ::umask(022);
        home_ = std::make_unique<QTemporaryDir>();
        QVERIFY(home_->isValid());
        path_ = inHome(u"Kelvo.conf"_s);
    }

    // MARK: reading

    void aBooleanIsRead_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<std::optional<bool>>("expected");
        using Answer = std::optional<bool>;
        const auto row = [](const char *line, Answer expected) { QTest::newRow(line) << QByteArray(line) << expected; };
        row("k=true", true);
        row("k=True", true);
        row("k=TRUE", true);
        row("k=1", true);
        row("k=\"true\"", true);
        row("k=false", false);
        row("k=FALSE", false);
        row("k=0", false);
        row("k=", std::nullopt);
        row("k=yes", std::nullopt);
        row("k=2", std::nullopt);
        row("k=01", std::nullopt);
        row("k=true, false", std::nullopt);
        row("k=@Invalid()", std::nullopt);
        row("k=@ByteArray(true)", std::nullopt);
        row("other=true", std::nullopt);
        row("=true", std::nullopt);
    }

    void aBooleanIsRead()
    {
        QFETCH(QByteArray, line);
        QFETCH(std::optional<bool>, expected);
        QCOMPARE(reading("[General]\n" + line + "\n")->boolean(u"k"_s), expected);
    }

    void anIntegerIsRead_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<std::optional<int>>("expected");
        using Answer = std::optional<int>;
        const auto row = [](const char *line, Answer expected) { QTest::newRow(line) << QByteArray(line) << expected; };
        row("k=60", 60);
        row("k=0", 0);
        row("k=-7", -7);
        row("k=\"300\"", 300);
        row("k=2147483647", 2147483647);
        row("k=-2147483648", std::numeric_limits<int>::min());
        row("k=2147483648", std::nullopt);
        row("k=99999999999999999999", std::nullopt);
        row("k=", std::nullopt);
        row("k=60.0", std::nullopt);
        row("k=6e1", std::nullopt);
        row("k=0x3c", std::nullopt);
        row("k=60 s", std::nullopt);
        row("k=true", std::nullopt);
        row("k=1,000", std::nullopt);
        row("k=@Invalid()", std::nullopt);
        row("other=60", std::nullopt);
    }

    void anIntegerIsRead()
    {
        QFETCH(QByteArray, line);
        QFETCH(std::optional<int>, expected);
        QCOMPARE(reading("[General]\n" + line + "\n")->integer(u"k"_s), expected);
    }

    void textsAndListsAreRead_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<std::optional<QString>>("text");
        QTest::addColumn<std::optional<QStringList>>("texts");
        using Text = std::optional<QString>;
        using Texts = std::optional<QStringList>;
        const auto row = [](const char *line, const Text &text, const Texts &texts) {
            QTest::newRow(line) << QByteArray(line) << text << texts;
        };
        row("k=claude", u"claude"_s, QStringList{u"claude"_s});
        row("k=claude, chatgpt", u"claude,chatgpt"_s, QStringList{u"claude"_s, u"chatgpt"_s});
        row("k=claude,chatgpt,cursor", u"claude,chatgpt,cursor"_s, QStringList{u"claude"_s, u"chatgpt"_s, u"cursor"_s});
        row("k=\"claude, chatgpt\"", u"claude, chatgpt"_s, QStringList{u"claude, chatgpt"_s});
        row("k=https://hooks.example/a,b?c=d", u"https://hooks.example/a,b?c=d"_s,
            QStringList{u"https://hooks.example/a"_s, u"b?c=d"_s});
        row("k=", u""_s, QStringList{});
        row("k=\"\"", u""_s, QStringList{});
        row("k=@Invalid()", std::nullopt, QStringList{});
        row("k=@@Invalid()", u"@Invalid()"_s, QStringList{u"@Invalid()"_s});
        row("k=@Size(3 4)", std::nullopt, std::nullopt);
        row("k=@Variant(\\0\\0\\0\\x1\\0\\x7f\\xff\\xff\\xff)", std::nullopt, std::nullopt);
        row("k=a, @Size(3 4)", std::nullopt, std::nullopt);
        row("k=a, @@b", u"a,@b"_s, QStringList{u"a"_s, u"@b"_s});
        row("k=@team", u"@team"_s, QStringList{u"@team"_s});
        row("k=1\nk=@Size(3 4)", std::nullopt, std::nullopt);
        row("k=@Size(3 4)\nk=1", u"1"_s, QStringList{u"1"_s});
        row("k = \t a  b \t", u"a  b"_s, QStringList{u"a  b"_s});
        row("k= a b ,  c ", u"a b,c"_s, QStringList{u"a b"_s, u"c"_s});
        row("k=\" a \"", u" a "_s, QStringList{u" a "_s});
        row("k=\" a \" b \" c \" ", u" a  b  c "_s, QStringList{u" a  b  c "_s});
        row("k=\"a\\\"b\"", u"a\"b"_s, QStringList{u"a\"b"_s});
        row("k=a;b", u"a"_s, QStringList{u"a"_s});
        row("k=a ; b, c", u"a"_s, QStringList{u"a"_s});
        row("k=\"a;b\" ;c", u"a;b"_s, QStringList{u"a;b"_s});
        row("k=a#b", u"a#b"_s, QStringList{u"a#b"_s});
        row("k=a,", u"a,"_s, QStringList{u"a"_s, QString()});
        row("k=\\x41\\x42", u"AB"_s, QStringList{u"AB"_s});
        row("k=\\xe4\\x20AC", u"ä€"_s, QStringList{u"ä€"_s});
        row("k=\\x1e100", u"\ue100"_s, QStringList{u"\ue100"_s});
        row("k=\\101\\1018", u"AA8"_s, QStringList{u"AA8"_s});
        row("k=\\x20a\\x20", u"\u020a "_s, QStringList{u"\u020a "_s});
        row("k=\\a\\b\\f\\n\\r\\t\\v", u"\a\b\f\n\r\t\v"_s, QStringList{u"\a\b\f\n\r\t\v"_s});
        row("k=\\q\\'\\?\\;\\,", u"q'?;,"_s, QStringList{u"q'?;,"_s});
        row("k=a\\", u"a"_s, QStringList{u"a"_s});
        row("k=Gr\xc3\xbc\xc3\x9f"
            "e",
            u"Grüße"_s, QStringList{u"Grüße"_s});
        row("k=60", u"60"_s, QStringList{u"60"_s});
        row("other=x", std::nullopt, std::nullopt);
    }

    void textsAndListsAreRead()
    {
        QFETCH(QByteArray, line);
        QFETCH(std::optional<QString>, text);
        QFETCH(std::optional<QStringList>, texts);
        const auto preferences = reading("[General]\n" + line + "\n");
        QCOMPARE(preferences->text(u"k"_s), text);
        QCOMPARE(preferences->texts(u"k"_s), texts);
    }

    void keysAboveTheFirstSectionAreRead() { QCOMPARE(reading("checkInterval=60\n")->integer(u"checkInterval"_s), 60); }

    void aMissingFileHasNoValuesAndStaysMissing()
    {
        {
            const IniPreferences preferences(path_);
            QCOMPARE(preferences.boolean(u"k"_s), std::nullopt);
            QCOMPARE(preferences.integer(u"k"_s), std::nullopt);
            QCOMPARE(preferences.text(u"k"_s), std::nullopt);
            QCOMPARE(preferences.texts(u"k"_s), std::nullopt);
        }
        QVERIFY(QDir(home_->path()).isEmpty());
    }

    // MARK: round trips

    void valuesOfEveryTypeAreReadBack()
    {
        IniPreferences preferences(path_);
        const auto verify = [](const IniPreferences &each) {
            return each.boolean(u"on"_s) == true && each.boolean(u"off"_s) == false && each.integer(u"sixty"_s) == 60
                && each.integer(u"least"_s) == std::numeric_limits<int>::min() && each.text(u"empty"_s) == u""_s
                && each.text(u"null"_s) == u""_s && each.texts(u"none"_s) == QStringList()
                && each.texts(u"one"_s) == QStringList{u"claude"_s}
            && each.texts(u"three"_s) == QStringList{u"b"_s, u"a, c"_s, u"b"_s};
        };
        preferences.setBoolean(u"on"_s, true);
        preferences.setBoolean(u"off"_s, false);
        preferences.setInteger(u"sixty"_s, 60);
        preferences.setInteger(u"least"_s, std::numeric_limits<int>::min());
        preferences.setText(u"empty"_s, u""_s);
        preferences.setText(u"null"_s, QString());
        preferences.setTexts(u"none"_s, {});
        preferences.setTexts(u"one"_s, {u"claude"_s});
        preferences.setTexts(u"three"_s, {u"b"_s, u"a, c"_s, u"b"_s});
        QVERIFY(verify(preferences));
        QVERIFY(verify(*nextStart()));
    }

    void everyTextIsReadBack_data()
    {
        QTest::addColumn<QString>("text");
        const QStringList texts{
            u"https://hooks.slack.com/services/T0/B0/xyz?a=1,2;b=%20&c=#d"_s,
            u"123456:ABC-DEF_ghi"_s,
            u"-1001234567890"_s,
            u"a,b"_s,
            u","_s,
            u"a;b"_s,
            u"say \"hi\""_s,
            u"\""_s,
            u"C:\\temp\\x41\\n"_s,
            u"\\"_s,
            u"100%"_s,
            u"%41%"_s,
            u" leading"_s,
            u"trailing "_s,
            u"  "_s,
            u"\ttab\t"_s,
            u"two\nlines\r\nand more\r"_s,
            u"@Invalid()"_s,
            u"@ByteArray(x)"_s,
            u"@@"_s,
            u"@"_s,
            u"@team, alerts"_s,
            u"[General]"_s,
            u"a=b"_s,
            u"# no comment"_s,
            u"; no comment"_s,
            u"true"_s,
            u"Grüße, 世界 🚀"_s,
            u"e\u0301\u00a0\u2028\u2029\ufeff"_s,
            u"\u00a0"_s,
            u"\ufeff"_s,
            u"\u007f\u0080\u0001f\u001b0"_s,
            QString(QChar::Null),
            u"a"_s + QChar::Null + u"1"_s,
            QString(100'000, u'x'),
        };
        for (const QString &text : texts)
            QTest::newRow(qPrintable(text.left(40).toHtmlEscaped())) << text;
    }

    void everyTextIsReadBack()
    {
        QFETCH(QString, text);
        IniPreferences(path_).setText(u"k"_s, text);
        QCOMPARE(nextStart()->text(u"k"_s), text);

        const QStringList pair{text, u"b"_s};
        IniPreferences(path_).setTexts(u"l"_s, pair);
        QCOMPARE(nextStart()->texts(u"l"_s), pair);
        QCOMPARE(nextStart()->text(u"k"_s), text);
    }

    void filesOfQSettingsAreRead_data() { everyTextIsReadBack_data(); }

    void filesOfQSettingsAreRead()
    {
        QFETCH(QString, text);
        const QStringList pair{text, u"b"_s};
        {
            QSettings settings(path_, QSettings::IniFormat);
            settings.setValue(u"k"_s, text);
            settings.setValue(u"l"_s, pair);
            settings.setValue(u"none"_s, QStringList());
            settings.setValue(u"on"_s, true);
            settings.setValue(u"seven"_s, 7);
        }
        const IniPreferences preferences(path_);
        QCOMPARE(preferences.text(u"k"_s), text);
        QCOMPARE(preferences.texts(u"l"_s), pair);
        QCOMPARE(preferences.texts(u"none"_s), QStringList());
        QCOMPARE(preferences.boolean(u"on"_s), true);
        QCOMPARE(preferences.integer(u"seven"_s), 7);
    }

    void randomTextsAreReadBack()
    {
        QRandomGenerator random(20260105);
        const QString alphabet = u"ab01,;\"'\\%= \t\n\r@()[]#&xüß世\u00a0"_s;
        IniPreferences preferences(path_);
        QHash<QString, QString> written;
        for (int i = 0; i < 400; ++i) {
            QString text;
            for (auto length = random.bounded(12); length > 0; --length)
                text += alphabet.at(random.bounded(int(alphabet.size())));
            const QString key = u"k%1"_s.arg(i % 40);
            written.insert(key, text);
            preferences.setText(key, text);
            if (i % 40 == 39) {
                const auto next = nextStart();
                for (auto each = written.cbegin(); each != written.cend(); ++each)
                    QCOMPARE(next->text(each.key()), each.value());
            }
        }
    }

    // MARK: the file

    void theDefaultFileIsInTheConfigurationDirectory_data()
    {
        QTest::addColumn<QByteArray>("configHome");
        QTest::addColumn<QString>("expected");
        QTest::newRow("set") << QByteArray("HOME/elsewhere") << u"elsewhere/Kelvo/Kelvo.conf"_s;
        QTest::newRow("unset") << QByteArray() << u".config/Kelvo/Kelvo.conf"_s;
    }

    void theDefaultFileIsInTheConfigurationDirectory()
    {
        QFETCH(QByteArray, configHome);
        QFETCH(QString, expected);
        const QByteArray home = QFile::encodeName(home_->path());
        QCOMPARE(inChild([&] {
                     ::setenv("HOME", home.constData(), 1);
                     ::setenv("XDG_CONFIG_HOME", configHome.replace("HOME", home).constData(), 1);
                     if (configHome.isEmpty())
                         ::unsetenv("XDG_CONFIG_HOME");
                     IniPreferences().setBoolean(u"hasOnboarded"_s, true);
                     return 0;
                 }),
                 0);
        QCOMPARE(contents(inHome(expected)), "[General]\nhasOnboarded=true\n"_ba);
    }

    void fileAndDirectoryArePrivate()
    {
        path_ = inHome(u"config/Kelvo/Kelvo.conf"_s);
        IniPreferences(path_).setText(u"telegramBotToken"_s, u"1:secret"_s);
        QCOMPARE(modeOf(path_), mode_t(0600));
        QCOMPARE(modeOf(inHome(u"config/Kelvo"_s)), mode_t(0700));
        QCOMPARE(modeOf(inHome(u"config"_s)), mode_t(0700));
        QCOMPARE(QDir(inHome(u"config/Kelvo"_s)).entryList(QDir::Files), QStringList{u"Kelvo.conf"_s});
        QCOMPARE(::umask(022), mode_t(022));
    }

    void aWiderModeIsRestrictedWhenTheFileIsRead_data()
    {
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("after");
        QTest::newRow("the usual mode") << 0644 << 0600;
        QTest::newRow("a group") << 0660 << 0600;
        QTest::newRow("only others") << 0604 << 0600;
        QTest::newRow("read-only") << 0444 << 0400;
        QTest::newRow("executable") << 0755 << 0700;
        QTest::newRow("executable only by others") << 0701 << 0700;
        QTest::newRow("private") << 0600 << 0600;
    }

    void aWiderModeIsRestrictedWhenTheFileIsRead()
    {
        QFETCH(int, before);
        QFETCH(int, after);
        QVERIFY(place(path_, "[General]\na=1\n"));
        QVERIFY(QFile::link(path_, inHome(u"link"_s)));
        QVERIFY(setMode(path_, mode_t(before)));
        QCOMPARE(IniPreferences(inHome(u"link"_s)).integer(u"a"_s), 1);
        QCOMPARE(modeOf(path_), mode_t(after));
        QCOMPARE(contents(path_), "[General]\na=1\n"_ba);
    }

    void aModeThatCannotBeRestrictedIsToldOnce()
    {
        if (::geteuid() != 0)
            QSKIP("only root gives files away");
        QVERIFY(place(path_, "[General]\na=1\n") && setMode(path_, 0644));
        QCOMPARE(::chown(QFile::encodeName(home_->path()).constData(), nobody, nobody), 0);
        QCOMPARE(asOrdinaryUser([&] {
                     static int warnings = 0;
                     qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &message) {
                         warnings += message.startsWith(u"Other users can read the settings in "_s) ? 1 : 100;
                     });
                     IniPreferences preferences(path_);
                     EXPECT(warnings == 1);
                     EXPECT(preferences.integer(u"a"_s) == 1);
                     EXPECT(modeOf(path_) == 0644);
                     preferences.setInteger(u"a"_s, 2);
                     EXPECT(warnings == 1);
                     EXPECT(contents(path_) == "[General]\na=2\n");
                     EXPECT(modeOf(path_) == 0600);
                     return 0;
                 }),
                 0);
    }

    void aWiderModeIsRestrictedWhenTheFileIsWritten()
    {
        IniPreferences preferences(path_);
        QVERIFY(place(path_, "[General]\na=1\n"));
        QVERIFY(setMode(path_, 0664));
        preferences.setInteger(u"b"_s, 2);
        QCOMPARE(modeOf(path_), mode_t(0600));
        QCOMPARE(contents(path_), "[General]\na=1\nb=2\n"_ba);
    }

    void aSymbolicLinkIsKept()
    {
        QVERIFY(QDir(home_->path()).mkdir(u"dotfiles"_s));
        const QString target = inHome(u"dotfiles/kelvo.conf"_s);
        QVERIFY(place(target, "[General]\na=1\n"));
        QVERIFY(QFile::link(target, path_));
        IniPreferences(path_).setInteger(u"a"_s, 2);
        QCOMPARE(QFile::symLinkTarget(path_), target);
        QCOMPARE(contents(target), "[General]\na=2\n"_ba);
        QCOMPARE(modeOf(target), mode_t(0600));
    }

    void asManySymbolicLinksAsTheSystemFollowsAreKept()
    {
        const auto link = [this](int number) { return inHome(u"link-%1"_s.arg(number)); };
        constexpr int most = 40; // see path_resolution(7)
        QVERIFY(place(path_, "[General]\na=1\n"));
        QVERIFY(QFile::link(path_, link(1)));
        for (int i = 2; i <= most; ++i)
            QVERIFY(QFile::link(link(i - 1), link(i)));
        IniPreferences preferences(link(most));
        QCOMPARE(preferences.integer(u"a"_s), 1);
        preferences.setInteger(u"a"_s, 2);
        QCOMPARE(contents(path_), "[General]\na=2\n"_ba);
        QVERIFY(QFileInfo(link(1)).isSymLink());
    }

    void anotherKeyEditedByHandIsKept()
    {
        IniPreferences preferences(path_);
        preferences.setInteger(u"checkInterval"_s, 60);
        QVERIFY(place(path_, "[General]\ncheckInterval=60\nslackChannelLabel=by hand\n\n[Notes]\nmine=yes\n"));
        preferences.setInteger(u"checkInterval"_s, 300);
        QCOMPARE(contents(path_), "[General]\ncheckInterval=300\nslackChannelLabel=by hand\n\n[Notes]\nmine=yes\n"_ba);
    }

    void aKeyThatWasWrittenAndThenEditedByHandIsKept()
    {
        IniPreferences preferences(path_);
        preferences.setInteger(u"checkInterval"_s, 60);
        QVERIFY(place(path_, "[General]\ncheckInterval=300\n"));
        preferences.setBoolean(u"notifyOnOutage"_s, true);
        QCOMPARE(contents(path_), "[General]\ncheckInterval=300\nnotifyOnOutage=true\n"_ba);
    }

    void aWriteChangesOnlyItsOwnLine_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char *name, const char *before, const char *after) {
            QTest::newRow(name) << QByteArray(before) << QByteArray(after);
        };
        row("an empty file", "", "[General]\nk=7\n");
        row("no end of line", "[General]\nk=1", "[General]\nk=7\n");
        row("comments", "; mine\n[General]\n# it is one\nk=1\n; end\n", "; mine\n[General]\n# it is one\nk=7\n; end\n");
        row("a comment alone", "; don\"t\n", "; don\"t\nk=7\n");
        row("blanks", "  [ general ]\n\n  k = 1  \n\n", "  [ general ]\n\nk=7\n\n");
        row("no section", "a=1\nk=2\n", "a=1\nk=7\n");
        row("the same key elsewhere", "[Other]\nk=1\n", "[General]\nk=7\n\n[Other]\nk=1\n");
        row("new, before a section", "[General]\na=1\n\n[Other]\nk=1\n", "[General]\na=1\nk=7\n\n[Other]\nk=1\n");
        row("said twice", "[General]\nk=1\na=2\nk=3\n", "[General]\nk=7\na=2\nk=7\n");
        row("in two places", "k=1\n[Other]\nb=1\n[General]\nk=3\n", "k=7\n[Other]\nb=1\n[General]\nk=7\n");
        row("no setting", "[General]\nwhat is this\n", "[General]\nwhat is this\nk=7\n");
        row("a longer key", "[General]\nkk=1\n", "[General]\nkk=1\nk=7\n");
        row("not UTF-8", "[General]\nb=\xff\xfe\n", "[General]\nb=\xff\xfe\nk=7\n");
        row("a byte order mark", "\xef\xbb\xbf[Other]\nb=1\n", "[General]\nk=7\n\n[Other]\nb=1\n");
        row("carriage returns", "[General]\r\na=1\r\n", "[General]\r\na=1\r\nk=7\n");
        row("a comment behind a value", "[General]\na=2;\"3\n", "[General]\na=2;\"3\nk=7\n");
    }

    void aWriteChangesOnlyItsOwnLine()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        reading(before)->setInteger(u"k"_s, 7);
        QCOMPARE(contents(path_), after);
        QCOMPARE(nextStart()->integer(u"k"_s), 7);
    }

    void theSameValueIsNotWrittenAgain()
    {
        IniPreferences preferences(path_);
        preferences.setTexts(u"l"_s, {u"a"_s});
        QVERIFY(QFile::remove(path_));
        preferences.setTexts(u"l"_s, {u"a"_s});
        QVERIFY(!QFile::exists(path_));
        preferences.setTexts(u"l"_s, {u"b"_s});
        QVERIFY(QFile::exists(path_));
    }

    void aFileThatVanishedIsWrittenWithAllSettings_data()
    {
        QTest::addColumn<QString>("vanished");
        QTest::newRow("the file") << u"Kelvo/Kelvo.conf"_s;
        QTest::newRow("its directory") << u"Kelvo"_s;
        QTest::newRow("its content") << QString();
    }

    void aFileThatVanishedIsWrittenWithAllSettings()
    {
        QFETCH(QString, vanished);
        path_ = inHome(u"Kelvo/Kelvo.conf"_s);
        QVERIFY(QDir(home_->path()).mkdir(u"Kelvo"_s));
        QVERIFY(place(path_, "[General]\nread=1\nlist=@Invalid()\n%3Dodd=1\n"));
        IniPreferences preferences(path_);
        preferences.setText(u"written"_s, u"2, 3"_s);
        if (vanished.isEmpty())
            QVERIFY(place(path_, {}));
        else if (QFileInfo(inHome(vanished)).isDir())
            QVERIFY(QDir(inHome(vanished)).removeRecursively());
        else
            QVERIFY(QFile::remove(path_));

        preferences.setInteger(u"read"_s, 4);
        QCOMPARE(contents(path_), "[General]\nlist=@Invalid()\nread=4\nwritten=\"2, 3\"\n"_ba);
        QCOMPARE(modeOf(path_), mode_t(0600));
    }

    // MARK: two processes

    void twoProcessesKeepEachOthersSettings()
    {
        constexpr int changes = 200;
        const auto writing = [this](const QString &key) {
            const pid_t child = ::fork();
            if (child == 0) {
                IniPreferences preferences(path_);
                for (int i = 0; i < changes; ++i)
                    preferences.setInteger(key + QString::number(i), i);
                ::_exit(0);
            }
            return child;
        };
        for (const pid_t child : {writing(u"a"_s), writing(u"b"_s)}) {
            int status = -1;
            ::waitpid(child, &status, 0);
            QCOMPARE(status, 0);
        }
        const auto next = nextStart();
        for (int i = 0; i < changes; ++i) {
            QCOMPARE(next->integer(u"a%1"_s.arg(i)), i);
            QCOMPARE(next->integer(u"b%1"_s.arg(i)), i);
        }
        QCOMPARE(filesInHome(), QStringList{u"Kelvo.conf"_s});
    }

    void aProcessThatKeepsTheLockIsNotWaitedFor()
    {
        IniPreferences preferences(path_);
        preferences.setInteger(u"a"_s, 1);
        QVERIFY(place(path_ + u".unfinished"_s, "of the other process"));
        const int directory = ::open(QFile::encodeName(home_->path()).constData(), O_RDONLY | O_CLOEXEC);
        QCOMPARE(::flock(directory, LOCK_EX), 0);

        QElapsedTimer timer;
        timer.start();
        preferences.setInteger(u"a"_s, 2);
        QVERIFY(timer.elapsed() < 10'000);
        QCOMPARE(contents(path_), "[General]\na=1\n"_ba);
        QCOMPARE(preferences.integer(u"a"_s), 2);
        QCOMPARE(nextStart()->integer(u"a"_s), 1);
        QCOMPARE(IniPreferences(path_).integer(u"a"_s), 1);
        QCOMPARE(contents(path_ + u".unfinished"_s), "of the other process"_ba);

        ::close(directory);
        preferences.setInteger(u"b"_s, 3);
        QCOMPARE(contents(path_), "[General]\na=2\nb=3\n"_ba);
        QCOMPARE(filesInHome(), QStringList{u"Kelvo.conf"_s});
    }

    void aDirectoryWithoutLocksIsWrittenByOneAtATime()
    {
        // A directory that cannot be opened stands for one on a file system without locks.
        QVERIFY(setMode(home_->path(), 0300) && giveAway(home_->path()));
        QCOMPARE(asOrdinaryUser([&] {
                     IniPreferences preferences(path_);
                     preferences.setInteger(u"a"_s, 1);
                     EXPECT(contents(path_) == "[General]\na=1\n");
                     EXPECT(place(path_ + u".unfinished"_s, "of the other process"));
                     preferences.setInteger(u"b"_s, 2);
                     EXPECT(contents(path_) == "[General]\na=1\n");
                     EXPECT(contents(path_ + u".unfinished"_s) == "of the other process");
                     EXPECT(IniPreferences(path_).integer(u"a"_s) == 1);
                     EXPECT(!QFile::exists(path_ + u".unfinished"_s));
                     preferences.setInteger(u"c"_s, 3);
                     EXPECT(contents(path_) == "[General]\na=1\nb=2\nc=3\n");
                     EXPECT(setMode(home_->path(), 0700));
                     return 0;
                 }),
                 0);
    }

    void nothingIsPendingAfterAWrite()
    {
        IniPreferences preferences(path_);
        preferences.setInteger(u"k"_s, 1);
        EventCounter events;
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(events.count, 0);
    }

    // MARK: damaged files

    void aDamagedLineIsKeptAndDoesNotChangeOthers_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QString>("b");
        const auto row = [](const char *name, const char *before, const char *after, const QString &b = QString()) {
            QTest::newRow(name) << QByteArray(before) << QByteArray(after) << b;
        };
        row("an open quote", "b=\"2\na=1\n", "b=\"2\na=1\nc=7\n", u"2"_s);
        row("an open quote in a list", "b=1, \"2, 3\na=1\n", "b=1, \"2, 3\na=1\nc=7\n", u"1,2, 3"_s);
        row("a backslash at the end", "b=2\\\na=1\n", "b=2\\\na=1\nc=7\n", u"2"_s);
        row("a backslash alone", "\\\na=1\n", "\\\na=1\nc=7\n");
        row("an open quote without a key", "it \"is\na=1\n", "it \"is\na=1\nc=7\n");
        row("no key", "=2\na=1\n", "=2\na=1\nc=7\n");
        row("an odd key", "b\"=2\n\xc3\xa4=3\na=1\n", "b\"=2\n\xc3\xa4=3\na=1\nc=7\n");
        row("an open quote in a section", "a=1\n[\"Other]\nb=2\n", "a=1\nc=7\n[\"Other]\nb=2\n");
        row("an open section", "a=1\n[Other\nb=2\n", "a=1\nc=7\n[Other\nb=2\n");
        row("an open general section", "[Other]\na=2\n[General\na=1\n", "[Other]\na=2\n[General\na=1\nc=7\n");
        row("two byte order marks", "\xef\xbb\xbf\xef\xbb\xbf[General]\na=1\n", "[General]\na=1\nc=7\n");
        row("an escaped key", "%63=2\na=1\n", "%63=2\na=1\nc=7\n");
        row("a carriage return within", "b=2\r3\na=1\n", "b=2\r3\na=1\nc=7\n", u"2\r3"_s);
    }

    void aDamagedLineIsKeptAndDoesNotChangeOthers()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QString, b);
        const auto preferences = reading(before);
        QCOMPARE(preferences->integer(u"a"_s), 1);
        QCOMPARE(preferences->text(u"b"_s).value_or(QString()), b);
        QCOMPARE(contents(path_), before);

        preferences->setInteger(u"c"_s, 7);
        QCOMPARE(contents(path_), after);
        QCOMPARE(filesInHome(), QStringList{u"Kelvo.conf"_s});
        const auto next = nextStart();
        QCOMPARE(next->integer(u"a"_s), 1);
        QCOMPARE(next->text(u"b"_s).value_or(QString()), b);
        QCOMPARE(next->integer(u"c"_s), 7);
    }

    void randomBytesAreKept()
    {
        QByteArray garbage(5000, '\0');
        QRandomGenerator random(1);
        for (char &byte : garbage)
            byte = char(random.bounded(256));
        const auto preferences = reading(garbage);
        preferences->setInteger(u"c"_s, 7);
        QCOMPARE(nextStart()->integer(u"c"_s), 7);
        QCOMPARE(contents(path_).replace("c=7\n", ""), garbage + '\n');
        QCOMPARE(filesInHome(), QStringList{u"Kelvo.conf"_s});
    }

    // MARK: files that cannot be written

    void aFileWithoutReadPermissionIsNotChanged()
    {
        const QByteArray bytes = "[General]\na=1\n";
        QVERIFY(place(path_, bytes));
        QVERIFY(setMode(path_, 0000));
        QVERIFY(giveAway(path_) && giveAway(home_->path()));
        QCOMPARE(asOrdinaryUser([&] {
                     {
                         IniPreferences preferences(path_);
                         EXPECT(!preferences.integer(u"a"_s));
                         preferences.setInteger(u"a"_s, 2);
                         preferences.setTexts(u"l"_s, {});
                         EXPECT(preferences.integer(u"a"_s) == 2);
                         EXPECT(preferences.texts(u"l"_s) == QStringList());
                         QCoreApplication::sendPostedEvents();
                     }
                     EXPECT(modeOf(path_) == 0000);
                     EXPECT(setMode(path_, 0600));
                     EXPECT(contents(path_) == bytes);
                     return 0;
                 }),
                 0);
    }

    void aDirectoryInPlaceOfTheFileIsNotChanged()
    {
        QVERIFY(QDir(home_->path()).mkpath(u"Kelvo.conf"_s));
        IniPreferences preferences(path_);
        preferences.setText(u"k"_s, u"v"_s);
        QCOMPARE(preferences.text(u"k"_s), u"v"_s);
        QVERIFY(QFileInfo(path_).isDir());
        QCOMPARE(QDir(home_->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{u"Kelvo.conf"_s});
    }

    void aDeviceInPlaceOfTheFileIsNotChanged()
    {
        // Use a separate device, so that a defect cannot replace the /dev/null of the system.
        if (::mknod(QFile::encodeName(path_).constData(), S_IFCHR | 0600, makedev(1, 3)) != 0)
            QSKIP("only root makes devices");
        IniPreferences preferences(path_);
        preferences.setText(u"k"_s, u"v"_s);
        QCOMPARE(preferences.text(u"k"_s), u"v"_s);
        struct stat info = {};
        QCOMPARE(::stat(QFile::encodeName(path_).constData(), &info), 0);
        QVERIFY(S_ISCHR(info.st_mode));
    }

    void aPipeInPlaceOfTheFileDoesNotBlockTheStart()
    {
        QCOMPARE(::mkfifo(QFile::encodeName(path_).constData(), 0600), 0);
        QCOMPARE(inChild([&] {
                     ::alarm(20);
                     IniPreferences preferences(path_);
                     preferences.setText(u"k"_s, u"v"_s);
                     return preferences.text(u"k"_s) == u"v"_s ? 0 : 1;
                 }),
                 0);
    }

    void aFileInPlaceOfTheDirectoryKeepsValuesInMemory()
    {
        QVERIFY(place(inHome(u"Kelvo"_s), "in the way"));
        IniPreferences preferences(inHome(u"Kelvo/Kelvo.conf"_s));
        preferences.setText(u"k"_s, u"v"_s);
        QCOMPARE(preferences.text(u"k"_s), u"v"_s);
        QCOMPARE(contents(inHome(u"Kelvo"_s)), "in the way"_ba);
    }

    void aDirectoryInPlaceOfTheUnfinishedFileKeepsValuesInMemory()
    {
        const QByteArray bytes = "[General]\na=1\n";
        QVERIFY(place(path_, bytes));
        QVERIFY(QDir().mkdir(path_ + u".unfinished"_s));
        IniPreferences preferences(path_);
        preferences.setInteger(u"a"_s, 2);
        QCOMPARE(preferences.integer(u"a"_s), 2);
        QCOMPARE(contents(path_), bytes);

        QVERIFY(QDir().rmdir(path_ + u".unfinished"_s));
        preferences.setInteger(u"b"_s, 3);
        QCOMPARE(contents(path_), "[General]\na=2\nb=3\n"_ba);
    }

    void aReadOnlyDirectoryKeepsValuesInMemoryUntilItCanBeWritten()
    {
        const QByteArray bytes = "[General]\na=1\n";
        QVERIFY(place(path_, bytes));
        QVERIFY(setMode(path_, 0600) && setMode(home_->path(), 0500));
        QVERIFY(giveAway(path_) && giveAway(home_->path()));
        QCOMPARE(asOrdinaryUser([&] {
                     IniPreferences preferences(path_);
                     EXPECT(preferences.integer(u"a"_s) == 1);
                     preferences.setInteger(u"a"_s, 2);
                     preferences.setInteger(u"b"_s, 3);
                     EXPECT(preferences.integer(u"a"_s) == 2 && preferences.integer(u"b"_s) == 3);
                     EXPECT(contents(path_) == bytes);

                     EXPECT(setMode(home_->path(), 0700));
                     preferences.setInteger(u"c"_s, 4);
                     EXPECT(contents(path_) == "[General]\na=2\nb=3\nc=4\n");
                     return 0;
                 }),
                 0);
    }

    void aFullDiskKeepsTheOldFile_data()
    {
        QTest::addColumn<int>("size");
        QTest::newRow("noticed when the last buffer is written") << 8'000;
        QTest::newRow("noticed earlier") << 50'000;
    }

    void aFullDiskKeepsTheOldFile()
    {
        QFETCH(int, size);
        const QByteArray bytes = "[General]\na=1\n";
        QVERIFY(place(path_, bytes));
        QCOMPARE(inChild([&] {
                     const QString tooMuch(size, u'x');
                     IniPreferences preferences(path_);
                     ::signal(SIGXFSZ, SIG_IGN);
                     rlimit limit{};
                     ::getrlimit(RLIMIT_FSIZE, &limit);
                     limit.rlim_cur = 4096;
                     EXPECT(::setrlimit(RLIMIT_FSIZE, &limit) == 0);
                     preferences.setText(u"big"_s, tooMuch);
                     EXPECT(contents(path_) == bytes);
                     EXPECT(preferences.text(u"big"_s) == tooMuch);
                     EXPECT(QDir(home_->path()).entryList(QDir::Files) == QStringList{u"Kelvo.conf"_s});

                     // The event loop does not try again; the next write does.
                     limit.rlim_cur = limit.rlim_max;
                     EXPECT(::setrlimit(RLIMIT_FSIZE, &limit) == 0);
                     QCoreApplication::sendPostedEvents();
                     EXPECT(contents(path_) == bytes);
                     preferences.setInteger(u"b"_s, 2);
                     EXPECT(contents(path_) == "[General]\na=1\nb=2\nbig=" + tooMuch.toLatin1() + "\n");
                     return 0;
                 }),
                 0);
    }

    // MARK: killed

    void theFileIsTheOldOrTheNewOneWhenTheProcessIsKilled()
    {
        constexpr int length = 3000;
        QRandomGenerator random(7);
        IniPreferences(path_).setText(u"text"_s, QString(length, u'a'));
        int changes = 0;
        for (int round = 0; round < 1000 && changes < 20; ++round) {
            // The child begins to write at a time that depends on the machine, so it tells.
            int writing[2];
            QCOMPARE(::pipe2(writing, O_CLOEXEC), 0);
            const pid_t child = ::fork();
            if (child == 0) {
                IniPreferences preferences(path_);
                if (::write(writing[1], "w", 1) != 1)
                    std::_Exit(1);
                for (int i = 0;; ++i)
                    preferences.setText(u"text"_s, QString(length, QChar(u'a' + i % 26)));
            }
            char begun = 0;
            QCOMPARE(::read(writing[0], &begun, 1), 1);
            ::close(writing[0]);
            ::close(writing[1]);
            ::usleep(useconds_t(random.bounded(9000)));
            ::kill(child, SIGKILL);
            ::waitpid(child, nullptr, 0);

            const QString text = nextStart()->text(u"text"_s).value_or(QString());
            QCOMPARE(text.size(), length);
            QCOMPARE(text.count(text.at(0)), length);
            changes += text.at(0) != u'a' ? 1 : 0;
            const auto entries = QDir(home_->path()).entryInfoList({u"Kelvo.conf*"_s}, QDir::Files | QDir::Hidden);
            for (const QFileInfo &entry : entries)
                QCOMPARE(modeOf(entry.filePath()) & 077, mode_t(0));

            // The next start does not block and can write.
            IniPreferences next(path_);
            next.setInteger(u"round"_s, round);
            QVERIFY(contents(path_).contains("\nround=" + QByteArray::number(round) + "\n"));
            next.setText(u"text"_s, QString(length, u'a'));
        }
        QCOMPARE(changes, 20);
    }
};

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::IniPreferencesTest)
#include "tst_inipreferences.moc"
