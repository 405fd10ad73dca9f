#include "platform/TerminationSignals.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const QString childFlag = u"--child"_s;

void say(const char *word)
{
    std::fputs(word, stdout);
    std::fflush(stdout);
}

auto handlerOf(int signal)
{
    struct sigaction action = {};
    ::sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

/// Blocks the event loop. Prints a line when the first signal has arrived.
[[noreturn]] void hang()
{
    while (handlerOf(SIGTERM) != SIG_DFL)
        ::usleep(1000);
    say("caught ");
    for (;;)
        ::pause();
}

/// The program that receives the signals. It prints a line when it is ready and another one after its event loop.
int runChild(QCoreApplication &application, const QString &kind)
{
    if (kind == u"nohup"_s)
        std::signal(SIGHUP, SIG_IGN);
    quitOnTerminationSignals(application);
    if (handlerOf(SIGHUP) == SIG_IGN)
        say("deaf to SIGHUP ");

    QObject::connect(&application, &QCoreApplication::aboutToQuit, [] { say("leaving "); });
    QTimer::singleShot(0, &application, [kind] {
        say("ready ");
        if (kind == u"stuck"_s)
            hang();
    });
    const int result = QCoreApplication::exec();
    say("left");
    return result;
}

} // namespace

class TerminationSignalsTest : public QObject
{
    Q_OBJECT

private:
    QProcess child_;

    void start(const QString &kind)
    {
        child_.start(QCoreApplication::applicationFilePath(), {childFlag, kind});
        QVERIFY(child_.waitForStarted());
        output_.clear();
        QVERIFY(hears("ready "));
    }

    bool hears(const QByteArray &word)
    {
        return QTest::qWaitFor([&] {
            output_ += child_.readAllStandardOutput();
            return output_.contains(word);
        });
    }

    void send(int signal) { ::kill(static_cast<pid_t>(child_.processId()), signal); }

    QByteArray output_;

private Q_SLOTS:
    void cleanup()
    {
        child_.kill();
        child_.waitForFinished();
    }

    void aSignalExitsTheEventLoopCleanly_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGHUP") << SIGHUP;
    }

    void aSignalExitsTheEventLoopCleanly()
    {
        QFETCH(int, signal);
        start(u"plain"_s);
        send(signal);
        QVERIFY(child_.waitForFinished());
        output_ += child_.readAllStandardOutput();
        QCOMPARE(output_, "ready leaving left"_ba);
        QCOMPARE(child_.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child_.exitCode(), 0);
    }

    void twoSignalsAtOnceExitItCleanly()
    {
        start(u"plain"_s);
        send(SIGTERM);
        send(SIGHUP);
        QVERIFY(child_.waitForFinished());
        output_ += child_.readAllStandardOutput();
        QCOMPARE(output_, "ready leaving left"_ba);
        QCOMPARE(child_.exitCode(), 0);
    }

    void theSecondSignalKillsAHangingProgram()
    {
        start(u"stuck"_s);
        send(SIGTERM);
        QVERIFY(hears("caught "));
        send(SIGTERM);
        QVERIFY(child_.waitForFinished());
        QCOMPARE(child_.exitStatus(), QProcess::CrashExit);
        QCOMPARE(child_.exitCode(), SIGTERM);
    }

    void anIgnoredHangupStaysIgnored()
    {
        start(u"nohup"_s);
        send(SIGHUP);
        send(SIGTERM);
        QVERIFY(child_.waitForFinished());
        output_ += child_.readAllStandardOutput();
        QCOMPARE(output_, "deaf to SIGHUP ready leaving left"_ba);
    }
};

} // namespace kelvo

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1) == kelvo::childFlag)
        return kelvo::runChild(application, arguments.at(2));

    kelvo::TerminationSignalsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_terminationsignals.moc"
