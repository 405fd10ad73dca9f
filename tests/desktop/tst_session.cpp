#include "FakeSessionManager.h"
#include "KelvoProcess.h"

#include <QTest>

namespace kelvo {

using namespace Qt::StringLiterals;

/// The program under a session manager.
class SessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksNotToBeRestartedAndEndsWithTheSession();
};

void SessionTest::asksNotToBeRestartedAndEndsWithTheSession()
{
    constexpr int restartNever = 3; // SmRestartNever
    FakeSessionManager manager;
    SimulatedInternet internet;
    KelvoProcess kelvo(internet);
    kelvo.writeSettings("[General]\nhasOnboarded=true\n");
    kelvo.setEnvironment(u"SESSION_MANAGER"_s, manager.address());
    kelvo.start();
    QTRY_VERIFY(manager.hasClient());
    QTRY_VERIFY(manager.isSaved());
    QTRY_VERIFY(!internet.requests().isEmpty());

    manager.endSession();
    QTRY_VERIFY(manager.isSaved());
    QCOMPARE(manager.number("RestartStyleHint"), restartNever);
    QVERIFY(kelvo.isRunning());
    manager.tellToExit();
    QTRY_VERIFY(!kelvo.isRunning());
    kelvo.endInSilence();
}

} // namespace kelvo

QTEST_MAIN(kelvo::SessionTest)
#include "tst_session.moc"
