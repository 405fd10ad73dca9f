#include "Version.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelvo {

/// The command line of the real program, without a display.
class CommandLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersInOneLineWithoutADisplay_data();
    void answersInOneLineWithoutADisplay();
    void refusesAnythingElse_data();
    void refusesAnythingElse();
    void acceptsTheOptionsOfQt_data();
    void acceptsTheOptionsOfQt();
    void aRestoredSessionDoesNotStartIt();

private:
    struct Answer
    {
        QString output;
        QString errors;
        int exitCode;
    };

    static Answer run(const QStringList &arguments)
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"DISPLAY"_s);
        environment.remove(u"WAYLAND_DISPLAY"_s);
        environment.remove(u"QT_QPA_PLATFORM"_s);
        const QTemporaryDir runtime; // Qt warns without one
        environment.insert(u"XDG_RUNTIME_DIR"_s, runtime.path());
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(KELVO_PROGRAM), arguments);
        process.waitForFinished();
        return {QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(process.readAllStandardError()),
                process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1};
    }

    static QString help() { return run({u"--help"_s}).output; }
};

void CommandLineTest::answersInOneLineWithoutADisplay_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("beginning");
    QTest::newRow("version") << u"--version"_s << "Kelvo "_L1 + QLatin1StringView(version);
    QTest::newRow("help") << u"--help"_s << u"Usage: kelvo "_s;
}

void CommandLineTest::answersInOneLineWithoutADisplay()
{
    QFETCH(QString, argument);
    QFETCH(QString, beginning);
    const auto answer = run({argument});
    QCOMPARE(answer.exitCode, 0);
    QVERIFY2(answer.output.startsWith(beginning), qPrintable(answer.output));
    QCOMPARE(answer.output.count(u'\n'), 1);
    QVERIFY(answer.output.endsWith(u'\n'));
    QVERIFY2(answer.errors.isEmpty(), qPrintable(answer.errors));
}

void CommandLineTest::refusesAnythingElse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("an unknown option") << QStringList{u"--unknown"_s};
    QTest::newRow("a file") << QStringList{u"/etc/hostname"_s};
    QTest::newRow("the version and more") << QStringList{u"--version"_s, u"--help"_s};
    QTest::newRow("the empty argument") << QStringList{QString()};
    QTest::newRow("an option of Qt without its value") << QStringList{u"-platform"_s};
    QTest::newRow("an option that begins as one of Qt's") << QStringList{u"-displayed"_s, u":0"_s};
    QTest::newRow("more than Qt's option") << QStringList{u"-platform"_s, u"offscreen"_s, u"file"_s};
}

void CommandLineTest::refusesAnythingElse()
{
    QFETCH(QStringList, arguments);
    const auto answer = run(arguments);
    QCOMPARE(answer.exitCode, 2);
    QVERIFY2(answer.output.isEmpty(), qPrintable(answer.output));
    QCOMPARE(answer.errors, help());
}

void CommandLineTest::acceptsTheOptionsOfQt_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("with a value") << QStringList{u"-style"_s, u"fusion"_s};
    QTest::newRow("with two hyphens") << QStringList{u"--style"_s, u"fusion"_s};
    QTest::newRow("with an equals sign") << QStringList{u"-style=fusion"_s};
    QTest::newRow("without a value") << QStringList{u"-reverse"_s};
    QTest::newRow("several") << QStringList{u"-reverse"_s, u"-display"_s, u":0"_s};
}

// The platform does not exist, so the program ends when Qt has read its options.
void CommandLineTest::acceptsTheOptionsOfQt()
{
    QFETCH(QStringList, arguments);
    const auto answer = run(arguments + QStringList{u"-platform"_s, u"nonexistent"_s});
    QVERIFY2(answer.errors.contains(u"nonexistent"_s), qPrintable(answer.errors));
    QVERIFY2(!answer.errors.contains(u"Usage"_s), qPrintable(answer.errors));
}

// Only the autostart entry starts the program at login.
void CommandLineTest::aRestoredSessionDoesNotStartIt()
{
    const auto answer = run({u"-platform"_s, u"offscreen"_s, u"-session"_s, u"an-id_a-key"_s});
    QCOMPARE(answer.exitCode, 0);
    QCOMPARE(answer.errors, QString());
    QCOMPARE(answer.output, QString());
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::CommandLineTest)
#include "tst_commandline.moc"
