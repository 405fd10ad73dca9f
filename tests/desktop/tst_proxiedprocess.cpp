#include "ProxiedProcess.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace kelvo {

class ProxiedProcessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stoppingAProcessThatNeverStartedSendsNoSignal();
    void stoppingAProcessThatHasEndedSendsNoSignal();

private:
    SimulatedInternet internet_;
};

void ProxiedProcessTest::stoppingAProcessThatNeverStartedSendsNoSignal()
{
    ProxiedProcess process(internet_, u"true"_s);
    QCOMPARE(process.stop(), -1);
}

void ProxiedProcessTest::stoppingAProcessThatHasEndedSendsNoSignal()
{
    ProxiedProcess process(internet_, u"/nonexistent"_s);
    process.start();
    const int status = process.waitForEnd();
    QVERIFY(status > 0);
    QVERIFY(!process.isRunning());
    QCOMPARE(process.stop(), status);
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::ProxiedProcessTest)
#include "tst_proxiedprocess.moc"
