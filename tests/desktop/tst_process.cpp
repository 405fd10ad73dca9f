#include "DesktopWindow.h"
#include "Hand.h"
#include "KelvoProcess.h"
#include "Screen.h"
#include "Version.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

namespace kelvo {

using namespace Qt::StringLiterals;

/// The program as a process: start, exit, signals, settings file and output.
class ProcessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aSecondStartHandsOverAndExits();
    void aSecondStartReportsAFirstOneThatHangs();
    void itsWindowsOpenAfterAnUpgrade_data();
    void itsWindowsOpenAfterAnUpgrade();
    void itGoesOnWithoutWindowsWhenAModuleIsMissing();
    void itGoesOnWithoutWindowsWhenALibraryIsMissing();
    void itOpensThePopoverWhenAPartOfTheOtherWindowsIsMissing();
    void itDoesNotLoadWindowsOfAnotherVersion();
    void aSignalEndsItAtOnceAndCleanly_data();
    void aSignalEndsItAtOnceAndCleanly();
    void itEndsCleanlyAfterAProxyScriptRan();
    void theSettingsFileIsReadAndNotChanged();
    void aDamagedSettingsFileIsToleratedAndNotChanged();
    void anUnreachableNetworkIsToleratedWithoutOutput();

private:
    /// Copies the program and its library into a directory, as an installation does. Returns the path of the program.
    static QString install(const QTemporaryDir &directory);
    static QString libraryOf(const QString &program);
    /// Makes the installed program look for QML modules in this folder only.
    static void findModulesIn(const QString &folder, const QTemporaryDir &installed);
    void startAndShowRing();
    /// Starts a program whose windows cannot be opened, asks for its popover and returns what it printed.
    QByteArray outputOfFailedOpening(KelvoProcess &kelvo);

    std::unique_ptr<SimulatedInternet> internet_;
    std::unique_ptr<KelvoProcess> kelvo_;
};

void ProcessTest::init()
{
    internet_ = std::make_unique<SimulatedInternet>();
    kelvo_ = std::make_unique<KelvoProcess>(*internet_);
}

void ProcessTest::cleanup()
{
    kelvo_.reset();
}

QString ProcessTest::libraryOf(const QString &program)
{
    const auto folder = QFileInfo(program).absolutePath() + u'/' + QStringLiteral(KELVO_VIEWS_FOLDER);
    return QDir::cleanPath(folder) + u"/kelvo-views.so"_s;
}

QString ProcessTest::install(const QTemporaryDir &directory)
{
    const auto program = directory.filePath(u"bin/kelvo"_s);
    for (const auto &[from, to] : {std::pair(KelvoProcess::program(), program),
                                   std::pair(libraryOf(KelvoProcess::program()), libraryOf(program))}) {
        if (!QDir().mkpath(QFileInfo(to).path()) || !QFile::copy(from, to)) {
            qFatal("Cannot copy %s", qPrintable(from));
        }
    }
    return program;
}

void ProcessTest::findModulesIn(const QString &folder, const QTemporaryDir &installed)
{
    QFile paths(installed.filePath(u"bin/qt.conf"_s));
    const auto qml = folder.toUtf8();
    if (!paths.open(QIODevice::WriteOnly)
        || paths.write("[Paths]\nPlugins=" + QLibraryInfo::path(QLibraryInfo::PluginsPath).toUtf8()
                       + "\nQmlImports=" + qml + "\nQml2Imports=" + qml + '\n')
            < 0) {
        qFatal("Cannot write %s", qPrintable(paths.fileName()));
    }
}

void ProcessTest::startAndShowRing()
{
    kelvo_->start();
    QTRY_VERIFY(Screen::findRing(RingState::available));
}

void ProcessTest::aSecondStartHandsOverAndExits()
{
    startAndShowRing();
    KelvoProcess::startAgain();
    QVERIFY(kelvo_->isRunning());
    kelvo_->endInSilence();
}

void ProcessTest::aSecondStartReportsAFirstOneThatHangs()
{
    startAndShowRing();
    const auto first = static_cast<pid_t>(kelvo_->processId());
    QCOMPARE(::kill(first, SIGSTOP), 0);
    const auto goOn = qScopeGuard([first] { ::kill(first, SIGCONT); });
    KelvoProcess second(*internet_);
    second.start();
    QCOMPARE(second.waitForEnd(), 1);
    QCOMPARE(second.output(), "Kelvo is already running but does not answer.\n"_ba);
    QVERIFY(kelvo_->isRunning());
}

void ProcessTest::itsWindowsOpenAfterAnUpgrade_data()
{
    QTest::addColumn<bool>("isReplaced");
    QTest::newRow("the library is replaced") << true;
    QTest::newRow("the library is removed") << false;
}

// A package manager replaces a file by renaming a new one over it. The new library belongs to another program.
void ProcessTest::itsWindowsOpenAfterAnUpgrade()
{
    QFETCH(bool, isReplaced);
    const QTemporaryDir installed;
    const auto program = install(installed);
    const auto library = libraryOf(program);

    KelvoProcess first(*internet_, program);
    const QTemporaryDir cache;
    first.setEnvironment(u"XDG_CACHE_HOME"_s, cache.path());
    first.writeSettings("[General]\nhasOnboarded=true\n");
    first.start();
    QTRY_VERIFY(Screen::findRing(RingState::available));
    QVERIFY(QFile::remove(library));
    if (isReplaced) {
        QFile other(library);
        QVERIFY(other.open(QIODevice::WriteOnly) && other.write("not this program's library") > 0);
    }
    QVERIFY(!DesktopWindow::titled(u"Kelvo"_s));
    KelvoProcess::startAgain();
    QTRY_VERIFY(DesktopWindow::titled(u"Kelvo"_s));
    first.endInSilence();
    // Qt stores QML files there that were not compiled with the program.
    QVERIFY(!QFile::exists(cache.filePath(u"Kelvo"_s)));
}

QByteArray ProcessTest::outputOfFailedOpening(KelvoProcess &kelvo)
{
    kelvo.writeSettings("[General]\nhasOnboarded=true\n");
    kelvo.start();
    const auto shows = [](const QString &title) { return DesktopWindow::titled(title).has_value(); };
    if (!QTest::qWaitFor([] { return Screen::findRing(RingState::available).has_value(); }, 20'000)) {
        return "no ring";
    }
    KelvoProcess second(*internet_);
    second.start();
    const bool isReported = second.waitForEnd() == 0
        && QTest::qWaitFor([&] { return shows(u"xfce4-notifyd"_s); }, 20'000);
    if (!isReported || shows(u"Kelvo"_s)) {
        return "no notification, or a window";
    }
    if (!kelvo.isRunning() || !Screen::findRing(RingState::available) || kelvo.stop() != 0) {
        return "ended";
    }
    return kelvo.output();
}

// The QML modules are missing, as after a part of the system was removed.
void ProcessTest::itGoesOnWithoutWindowsWhenAModuleIsMissing()
{
    const QTemporaryDir installed;
    KelvoProcess kelvo(*internet_, install(installed));
    findModulesIn(u"/nonexistent"_s, installed);
    const auto output = outputOfFailedOpening(kelvo);
    QVERIFY2(output.startsWith("The windows cannot be opened: ") && output.contains("is not installed"), output);
}

// A library that the views need is missing.
void ProcessTest::itGoesOnWithoutWindowsWhenALibraryIsMissing()
{
    const QTemporaryDir installed;
    const auto program = install(installed);
    QFile library(libraryOf(program));
    QVERIFY(library.open(QIODevice::ReadWrite));
    auto content = library.readAll();
    QVERIFY(content.contains("libQt6Quick.so.6"));
    content.replace("libQt6Quick.so.6", "libMissing_.so.6");
    QVERIFY(library.seek(0) && library.write(content) == content.size());
    library.close();

    KelvoProcess kelvo(*internet_, program);
    const auto output = outputOfFailedOpening(kelvo);
    QVERIFY2(output.startsWith("The windows cannot be opened: ") && output.contains("libMissing_.so.6")
                 && output.count('\n') == 1,
             output);
}

// A damaged installation: the module of the text fields and menus is there, but not its library.
void ProcessTest::itOpensThePopoverWhenAPartOfTheOtherWindowsIsMissing()
{
    const QTemporaryDir installed;
    const QDir modules(QLibraryInfo::path(QLibraryInfo::QmlImportsPath));
    const QDir damaged(installed.filePath(u"qml"_s));
    const auto quick = u"QtQuick/"_s;
    const auto templates = u"QtQuick/Templates/"_s;
    QVERIFY(damaged.mkpath(templates));
    QVERIFY(QFile::link(modules.filePath(u"QtQml"_s), damaged.filePath(u"QtQml"_s)));
    QVERIFY(QFile::copy(modules.filePath(templates + u"qmldir"_s), damaged.filePath(templates + u"qmldir"_s)));
    const auto entries = QDir(modules.filePath(quick)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    for (const auto &entry : entries) {
        QVERIFY(entry == u"Templates"_s
                || QFile::link(modules.filePath(quick + entry), damaged.filePath(quick + entry)));
    }

    KelvoProcess kelvo(*internet_, install(installed));
    findModulesIn(damaged.path(), installed);
    kelvo.writeSettings("[General]\nhasOnboarded=true\n");
    kelvo.start();
    QTRY_VERIFY(Screen::findRing(RingState::available));
    KelvoProcess::startAgain();
    QTRY_VERIFY(DesktopWindow::titled(u"Kelvo"_s));
    Hand::press(u"ctrl+comma"_s);
    QTRY_VERIFY(DesktopWindow::titled(u"xfce4-notifyd"_s));
    QVERIFY(!DesktopWindow::titled(u"Kelvo Settings"_s));

    QVERIFY(Screen::findRing(RingState::available));
    QTRY_VERIFY(!DesktopWindow::titled(u"Kelvo"_s));
    KelvoProcess::startAgain();
    QTRY_VERIFY(DesktopWindow::titled(u"Kelvo"_s));
    QCOMPARE(kelvo.stop(), 0);
    const auto output = kelvo.output();
    QVERIFY2(output.startsWith("The windows cannot be opened: ") && output.count('\n') == 1, output);
}

void ProcessTest::itDoesNotLoadWindowsOfAnotherVersion()
{
    const QTemporaryDir installed;
    const auto program = install(installed);
    QVERIFY(QFile::remove(libraryOf(program)));
    QVERIFY(QFile::copy(QStringLiteral(KELVO_OTHER_VIEWS), libraryOf(program)));
    KelvoProcess kelvo(*internet_, program);
    QCOMPARE(outputOfFailedOpening(kelvo),
             "The windows cannot be opened: the library kelvo-views is of version 0.9.0, but Kelvo is of version "_ba
                 + version + '\n');
}

void ProcessTest::aSignalEndsItAtOnceAndCleanly_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void ProcessTest::aSignalEndsItAtOnceAndCleanly()
{
    QFETCH(int, signal);
    startAndShowRing();
    QElapsedTimer elapsed;
    elapsed.start();
    QCOMPARE(kelvo_->stop(signal), 0);
    QVERIFY2(elapsed.elapsed() < 3000, qPrintable(QString::number(elapsed.elapsed())));
    QCOMPARE(kelvo_->output(), QByteArray());
}

void ProcessTest::itEndsCleanlyAfterAProxyScriptRan()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("The sanitizers end the program for objects of the system's proxy library");
#endif
    const QTemporaryDir folder;
    QFile script(folder.filePath(u"proxy.pac"_s));
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("function FindProxyForURL(url, host) { return 'PROXY 127.0.0.1:"
                 + QByteArray::number(internet_->port()) + "'; }");
    script.close();
    for (const auto &variable : {u"http_proxy"_s, u"https_proxy"_s}) {
        kelvo_->setEnvironment(variable, "pac+file://"_L1 + script.fileName());
    }
    // The ring shows that the script named the way to the servers.
    startAndShowRing();
    kelvo_->endInSilence();
}

void ProcessTest::theSettingsFileIsReadAndNotChanged()
{
    const auto content = "[General]\nenabledServices=cursor\nserviceOrder=cursor, nonsense, claude\n"_ba;
    kelvo_->writeSettings(content);
    QFile::setPermissions(kelvo_->settingsFile(), QFile::ReadOwner | QFile::WriteOwner);
    startAndShowRing();
    QCOMPARE(internet_->requestsTo(u"status.cursor.com"_s).size(), 1);
    QCOMPARE(internet_->requestsTo(u"status.claude.com"_s).size(), 0);
    QCOMPARE(kelvo_->stop(), 0);
    QFile file(kelvo_->settingsFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);
    QCOMPARE(QFileInfo(file).permissions()
                 & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
             QFile::Permissions());
}

void ProcessTest::aDamagedSettingsFileIsToleratedAndNotChanged()
{
    const auto content = "\x7f\x45LF\0\1[[[=%%\nenabledServices"_ba;
    kelvo_->writeSettings(content);
    startAndShowRing();
    QCOMPARE(internet_->requestsTo(u"status.claude.com"_s).size(), 1);
    kelvo_->endInSilence();
    QFile file(kelvo_->settingsFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);
}

void ProcessTest::anUnreachableNetworkIsToleratedWithoutOutput()
{
    internet_->setOffline(true);
    const auto before = Screen::picture();
    kelvo_->start();
    QTRY_VERIFY(Screen::barChangeSince(before).isValid());
    QTRY_VERIFY(internet_->connectionsAccepted() > 0);
    kelvo_->endInSilence();
}

} // namespace kelvo

QTEST_MAIN(kelvo::ProcessTest)
#include "tst_process.moc"
