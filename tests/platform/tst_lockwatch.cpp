#include "platform/LockWatch.h"
#include "support/FakeLogind.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

namespace kelvo {

class LockWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void reportsALock();
    void ignoresTheSessionsOfOthers();
    void reportsNothingBeforeStartAndAfterStop();
    void listensAgainAfterAStop();
    void mayBeStoppedByItsSignal();
    void usesTheNextBus();

private:
    std::unique_ptr<PrivateBus> bus_;
    std::unique_ptr<FakeLogind> logind_;
    std::unique_ptr<LockWatch> watch_;
};

void LockWatchTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    bus_ = std::make_unique<PrivateBus>();
    bus_->start();
    logind_ = std::make_unique<FakeLogind>(*bus_);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus_->address().toUtf8());
    watch_ = std::make_unique<LockWatch>();
}

void LockWatchTest::cleanup()
{
    watch_.reset();
    logind_.reset();
    bus_.reset();
}

// The subscription cannot be observed from outside, so the signal is repeated until it is received.
void LockWatchTest::reportsALock()
{
    QSignalSpy locked(watch_.get(), &LockWatch::locked);
    watch_->start();
    QTRY_VERIFY((logind_->lock(), !locked.isEmpty()));
}

void LockWatchTest::ignoresTheSessionsOfOthers()
{
    QSignalSpy locked(watch_.get(), &LockWatch::locked);
    watch_->start();
    QTRY_VERIFY((logind_->lockAnotherSession(), logind_->asked() >= 3));
    QVERIFY(locked.isEmpty());
}

void LockWatchTest::reportsNothingBeforeStartAndAfterStop()
{
    QSignalSpy locked(watch_.get(), &LockWatch::locked);
    watch_->start();
    watch_->stop();
    LockWatch other;
    QSignalSpy heard(&other, &LockWatch::locked);
    other.start();
    QTRY_VERIFY((logind_->lock(), !heard.isEmpty()));
    QVERIFY(locked.isEmpty());
}

void LockWatchTest::listensAgainAfterAStop()
{
    QSignalSpy locked(watch_.get(), &LockWatch::locked);
    watch_->start();
    watch_->stop();
    watch_->start();
    QTRY_VERIFY((logind_->lock(), !locked.isEmpty()));
}

void LockWatchTest::mayBeStoppedByItsSignal()
{
    QSignalSpy locked(watch_.get(), &LockWatch::locked);
    connect(watch_.get(), &LockWatch::locked, watch_.get(), &LockWatch::stop);
    watch_->start();
    QTRY_VERIFY((logind_->lock(), !locked.isEmpty()));
    watch_->start();
    QTRY_COMPARE_GE((logind_->lock(), locked.size()), 2);
}

void LockWatchTest::usesTheNextBus()
{
    QSignalSpy locked(watch_.get(), &LockWatch::locked);
    watch_->start();
    logind_.reset();
    bus_->kill();
    bus_->start();
    logind_ = std::make_unique<FakeLogind>(*bus_);
    QTRY_VERIFY((logind_->lock(), !locked.isEmpty()));
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::LockWatchTest)
#include "tst_lockwatch.moc"
