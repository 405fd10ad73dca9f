#include "platform/linux/LogindSleepWake.h"
#include "support/FakeLogind.h"

#include <QSignalSpy>
#include <QTest>

namespace kelvo {

class LogindSleepWakeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void reportsSleepAndWake();
    void doesNotRepeatSignals();
    void findsALoginManagerThatStartsLater();
    void findsABusThatStartsLater();
    void reportsAWakeWhenTheLoginManagerEndsDuringSleep();
    void reportsNothingWhenTheLoginManagerEndsWhileAwake();
    void reportsAWakeWhenTheBusEndsDuringSleepAndUsesTheNextBus();

private:
    void watch();
    void sleepOnceHeard(FakeLogind &logind);

    std::unique_ptr<PrivateBus> daemon_;
    std::unique_ptr<LogindSleepWake> sleepWake_;
    QStringList told_;
};

void LogindSleepWakeTest::init()
{
    daemon_ = std::make_unique<PrivateBus>();
    told_.clear();
}

void LogindSleepWakeTest::cleanup()
{
    sleepWake_.reset();
    daemon_.reset();
}

void LogindSleepWakeTest::watch()
{
    sleepWake_ = std::make_unique<LogindSleepWake>(std::make_shared<BusConnection>(daemon_->address()));
    connect(sleepWake_.get(), &SleepWake::willSleep, this, [this] { told_ << QStringLiteral("sleep"); });
    connect(sleepWake_.get(), &SleepWake::didWake, this, [this] { told_ << QStringLiteral("wake"); });
}

// The subscription cannot be observed from outside, so the signal is repeated until it is received.
void LogindSleepWakeTest::sleepOnceHeard(FakeLogind &logind)
{
    const auto heard = told_.size();
    QTRY_VERIFY((logind.prepareForSleep(true), told_.size() > heard));
    QCOMPARE(told_.last(), QStringLiteral("sleep"));
}

void LogindSleepWakeTest::reportsSleepAndWake()
{
    daemon_->start();
    FakeLogind logind(*daemon_);
    watch();
    sleepOnceHeard(logind);
    logind.prepareForSleep(false);
    QTRY_COMPARE(told_, (QStringList{QStringLiteral("sleep"), QStringLiteral("wake")}));
    logind.prepareForSleep(true);
    QTRY_COMPARE(told_.size(), 3);
    QCOMPARE(told_.last(), QStringLiteral("sleep"));
}

void LogindSleepWakeTest::doesNotRepeatSignals()
{
    daemon_->start();
    FakeLogind logind(*daemon_);
    watch();
    sleepOnceHeard(logind);
    logind.prepareForSleep(true);
    logind.prepareForSleep(false);
    logind.prepareForSleep(false);
    logind.prepareForSleep(true);
    QTRY_COMPARE(told_.size(), 3);
    QCOMPARE(told_, (QStringList{QStringLiteral("sleep"), QStringLiteral("wake"), QStringLiteral("sleep")}));
}

void LogindSleepWakeTest::findsALoginManagerThatStartsLater()
{
    daemon_->start();
    watch();
    FakeLogind logind(*daemon_);
    sleepOnceHeard(logind);
}

void LogindSleepWakeTest::findsABusThatStartsLater()
{
    watch();
    daemon_->start();
    FakeLogind logind(*daemon_);
    sleepOnceHeard(logind);
}

void LogindSleepWakeTest::reportsAWakeWhenTheLoginManagerEndsDuringSleep()
{
    daemon_->start();
    auto logind = std::make_unique<FakeLogind>(*daemon_);
    watch();
    sleepOnceHeard(*logind);

    logind.reset();
    QTRY_COMPARE(told_, (QStringList{QStringLiteral("sleep"), QStringLiteral("wake")}));

    logind = std::make_unique<FakeLogind>(*daemon_);
    sleepOnceHeard(*logind);
}

void LogindSleepWakeTest::reportsNothingWhenTheLoginManagerEndsWhileAwake()
{
    daemon_->start();
    auto logind = std::make_unique<FakeLogind>(*daemon_);
    watch();
    sleepOnceHeard(*logind);
    logind->prepareForSleep(false);
    QTRY_COMPARE(told_.size(), 2);

    logind.reset();
    logind = std::make_unique<FakeLogind>(*daemon_);
    sleepOnceHeard(*logind);
    QCOMPARE(told_, (QStringList{QStringLiteral("sleep"), QStringLiteral("wake"), QStringLiteral("sleep")}));
}

void LogindSleepWakeTest::reportsAWakeWhenTheBusEndsDuringSleepAndUsesTheNextBus()
{
    daemon_->start();
    auto logind = std::make_unique<FakeLogind>(*daemon_);
    watch();
    sleepOnceHeard(*logind);

    daemon_->kill();
    QTRY_COMPARE(told_.size(), 2);
    QCOMPARE(told_.last(), QStringLiteral("wake"));

    daemon_->start();
    logind = std::make_unique<FakeLogind>(*daemon_);
    sleepOnceHeard(*logind);
    QCOMPARE(told_.size(), 3);
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::LogindSleepWakeTest)
#include "tst_logindsleepwake.moc"
