#include "DesktopWindow.h"
#include "KelvoProcess.h"
#include "Screen.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLibraryInfo>
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
    void itsWindowsOpenAfterAnUpgrade_data();
    void itsWindowsOpenAfterAnUpgrade();
    void itGoesOnWhenItsWindowsCannotBeOpened();
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
    void startAndShowRing();

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

void ProcessTest::startAndShowRing()
{
    kelvo_->start();
    QTRY_VERIFY_WITH_TIMEOUT(Screen::findRing(RingState::available), 20'000);
}

void ProcessTest::aSecondStartHandsOverAndExits()
{
    startAndShowRing();
    KelvoProcess second(*internet_);
    second.start();
    QCOMPARE(second.waitForEnd(), 0);
    QCOMPARE(second.output(), QByteArray());
    QVERIFY(kelvo_->isRunning());
    QCOMPARE(kelvo_->stop(), 0);
    QCOMPARE(kelvo_->output(), QByteArray());
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
    QTRY_VERIFY_WITH_TIMEOUT(Screen::findRing(RingState::available), 20'000);
    QVERIFY(QFile::remove(library));
    if (isReplaced) {
        QFile other(library);
        QVERIFY(other.open(QIODevice::WriteOnly) && other.write("not this program's library") > 0);
    }
    QVERIFY(!DesktopWindow::titled(u"Kelvo"_s));
    KelvoProcess second(*internet_);
    second.start();
    QCOMPARE(second.waitForEnd(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(DesktopWindow::titled(u"Kelvo"_s), 20'000);
    QCOMPARE(first.stop(), 0);
    QCOMPARE(first.output(), QByteArray());
    // Qt stores QML files there that were not compiled with the program.
    QVERIFY(!QFile::exists(cache.filePath(u"Kelvo"_s)));
}

// The QML modules are missing, as after a part of the system was removed.
void ProcessTest::itGoesOnWhenItsWindowsCannotBeOpened()
{
    const QTemporaryDir installed;
    KelvoProcess first(*internet_, install(installed));
    QFile paths(installed.filePath(u"bin/qt.conf"_s));
    QVERIFY(paths.open(QIODevice::WriteOnly));
    paths.write("[Paths]\nPlugins=" + QLibraryInfo::path(QLibraryInfo::PluginsPath).toUtf8()
                + "\nQmlImports=/nonexistent\nQml2Imports=/nonexistent\n");
    paths.close();
    first.writeSettings("[General]\nhasOnboarded=true\n");
    first.start();
    QTRY_VERIFY_WITH_TIMEOUT(Screen::findRing(RingState::available), 20'000);
    KelvoProcess second(*internet_);
    second.start();
    QCOMPARE(second.waitForEnd(), 0);
    QTRY_VERIFY(DesktopWindow::titled(u"xfce4-notifyd"_s));
    QVERIFY(!DesktopWindow::titled(u"Kelvo"_s));
    QVERIFY(first.isRunning());
    QCOMPARE(first.stop(), 0);
    const auto output = first.output();
    QVERIFY2(output.startsWith("The windows cannot be opened: ") && output.contains("is not installed"), output);
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
    QCOMPARE(kelvo_->stop(), 0);
    QCOMPARE(kelvo_->output(), QByteArray());
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
    QCOMPARE(kelvo_->stop(), 0);
    QCOMPARE(kelvo_->output(), QByteArray());
    QFile file(kelvo_->settingsFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);
}

void ProcessTest::anUnreachableNetworkIsToleratedWithoutOutput()
{
    internet_->setOffline(true);
    const auto before = Screen::picture();
    kelvo_->start();
    QTRY_VERIFY_WITH_TIMEOUT(Screen::barChangeSince(before).isValid(), 20'000);
    QTRY_VERIFY_WITH_TIMEOUT(internet_->connectionsAccepted() > 0, 20'000);
    QCOMPARE(kelvo_->stop(), 0);
    QCOMPARE(kelvo_->output(), QByteArray());
}

} // namespace kelvo

QTEST_MAIN(kelvo::ProcessTest)
#include "tst_process.moc"
