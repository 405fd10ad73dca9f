#include "platform/linux/TimerfdClock.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <cerrno>
#include <ctime>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Makes the system calls of the clock under test fail.
bool noDescriptorLeft = false;
bool refusesToArm = false;
int lastClockId = -1;
int lastFlags = -1;

} // namespace

/// Replaces the function of the C library, so that a test can let it fail without using up all descriptors.
extern "C" int timerfd_create(int clockId, int flags) noexcept
{
    lastClockId = clockId;
    lastFlags = flags;
    if (noDescriptorLeft) {
        errno = EMFILE;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_timerfd_create, clockId, flags));
}

extern "C" int timerfd_settime(int descriptor, int flags, const itimerspec *time, itimerspec *former) noexcept
{
    if (refusesToArm) {
        errno = EINVAL;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_timerfd_settime, descriptor, flags, time, former));
}

namespace kelvo {

using std::chrono::milliseconds;
using TimerPtr = std::unique_ptr<ContinuousClock::Timer>;

namespace {

std::chrono::nanoseconds bootTime()
{
    timespec time{};
    ::clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

qsizetype openDescriptors()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size();
}

/// The number of times that the main thread has gone to sleep, and so has been woken up.
long sleeps()
{
    rusage usage{};
    ::getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_nvcsw;
}

} // namespace

class TimerfdClockTest : public QObject
{
    Q_OBJECT

private:
    TimerfdClock clock_;

private Q_SLOTS:
    void initTestCase()
    {
        // The event loop opens descriptors at its first use.
        int calls = 0;
        const TimerPtr timer = clock_.after(0ms, [&] { ++calls; });
        QTRY_COMPARE(calls, 1);
    }

    void callsOnceAndNotBeforeTheEndOfTheWait_data()
    {
        QTest::addColumn<int>("wait");
        QTest::newRow("1 ms") << 1;
        QTest::newRow("20 ms") << 20;
        QTest::newRow("over a second") << 1003;
    }

    void callsOnceAndNotBeforeTheEndOfTheWait()
    {
        QFETCH(int, wait);
        int calls = 0;
        const auto start = bootTime();
        std::chrono::nanoseconds took{};
        const TimerPtr timer = clock_.after(milliseconds(wait), [&] {
            ++calls;
            took = bootTime() - start;
        });
        QTRY_COMPARE(calls, 1);
        QVERIFY(took >= milliseconds(wait));

        int later = 0;
        const TimerPtr next = clock_.after(milliseconds(wait), [&] { ++later; });
        QTRY_COMPARE(later, 1);
        QCOMPARE(calls, 1);
    }

    void aWaitOfZeroOrLessCallsFromTheEventLoop_data()
    {
        QTest::addColumn<qint64>("wait");
        QTest::newRow("zero") << qint64(0);
        QTest::newRow("negative") << qint64(-1);
        QTest::newRow("very negative") << qint64(-5'000'000'000);
    }

    void aWaitOfZeroOrLessCallsFromTheEventLoop()
    {
        QFETCH(qint64, wait);
        int calls = 0;
        const TimerPtr timer = clock_.after(milliseconds(wait), [&] { ++calls; });
        QCOMPARE(calls, 0);
        QTRY_COMPARE(calls, 1);
    }

    void countsThroughSuspendAndDoesNotPassItsDescriptorToChildren()
    {
        const TimerPtr timer = clock_.after(1h, [] { });
        QCOMPARE(lastClockId, CLOCK_BOOTTIME);
        QCOMPARE(lastFlags & TFD_CLOEXEC, TFD_CLOEXEC);
    }

    void anEarlierDeadlineFiresBeforeALaterOneSetBefore()
    {
        int farCalls = 0;
        int nearCalls = 0;
        const TimerPtr far = clock_.after(1h, [&] { ++farCalls; });
        const TimerPtr near = clock_.after(2ms, [&] { ++nearCalls; });
        QTRY_COMPARE(nearCalls, 1);
        QCOMPARE(farCalls, 0);
    }

    void aDestroyedTimerNeverCalls()
    {
        int cancelled = 0;
        int witness = 0;
        TimerPtr timer = clock_.after(3ms, [&] { ++cancelled; });
        timer.reset();
        const TimerPtr later = clock_.after(20ms, [&] { ++witness; });
        QTRY_COMPARE(witness, 1);
        QCOMPARE(cancelled, 0);
    }

    void aDueTimerDestroyedByAnotherCallbackDoesNotCall()
    {
        // Both timers are due in the same turn of the event loop. The one that fires first destroys the other.
        int calls = 0;
        TimerPtr first;
        TimerPtr second;
        first = clock_.after(0ms, [&] {
            ++calls;
            second.reset();
        });
        second = clock_.after(0ms, [&] {
            ++calls;
            first.reset();
        });
        const auto start = bootTime();
        while (bootTime() - start < 2ms) { }
        QTRY_COMPARE(calls, 1);

        int witness = 0;
        const TimerPtr later = clock_.after(5ms, [&] { ++witness; });
        QTRY_COMPARE(witness, 1);
        QCOMPARE(calls, 1);
    }

    void aTimerMayBeDestroyedByItsOwnCallback()
    {
        const auto capture = std::make_shared<int>(7);
        int seen = 0;
        TimerPtr timer;
        timer = clock_.after(1ms, [&seen, &timer, capture] {
            timer.reset();
            seen = *capture;
        });
        QTRY_COMPARE(seen, 7);
        QCOMPARE(capture.use_count(), 1L);
    }

    void aCallbackMayReplaceItsOwnTimer()
    {
        int calls = 0;
        TimerPtr timer;
        std::function<void()> again = [&] {
            if (++calls < 50)
                timer = clock_.after(0ms, again);
        };
        timer = clock_.after(0ms, again);
        QTRY_COMPARE(calls, 50);
    }

    void aReusedDescriptorDoesNotFireTheNextTimerEarly()
    {
        // The descriptor of a destroyed timer, which is due in this turn of the event loop, is reused by a timer that is
        // due much later.
        int farCalls = 0;
        int witness = 0;
        TimerPtr due;
        TimerPtr far;
        const TimerPtr canceller = clock_.after(0ms, [&] {
            due.reset();
            far = clock_.after(1h, [&] { ++farCalls; });
        });
        due = clock_.after(0ms, [] { });
        const auto start = bootTime();
        while (bootTime() - start < 2ms) { }
        const TimerPtr later = clock_.after(10ms, [&] { ++witness; });
        QTRY_COMPARE(witness, 1);
        QVERIFY(far != nullptr);
        QCOMPARE(farCalls, 0);
    }

    void descriptorsAreClosed()
    {
        const auto before = openDescriptors();
        int calls = 0;
        {
            std::vector<TimerPtr> timers;
            for (int i = 0; i < 40; ++i)
                timers.push_back(clock_.after(i % 2 == 0 ? 0ms : 1h, [&] { ++calls; }));
            QCOMPARE(openDescriptors(), before + 40);
            QTRY_COMPARE(calls, 20);
        }
        QCOMPARE(openDescriptors(), before);
    }

    void callsEvenWhenNoDescriptorIsLeft()
    {
        int calls = 0;
        int cancelled = 0;
        int farCalls = 0;
        TimerPtr own;
        TimerPtr waiting;
        TimerPtr far;
        TimerPtr gone;
        noDescriptorLeft = true;
        own = clock_.after(1ms, [&] {
            own.reset();
            ++calls;
        });
        waiting = clock_.after(-4ms, [&] { ++calls; });
        far = clock_.after(std::chrono::hours(24 * 365 * 100), [&] { ++farCalls; });
        gone = clock_.after(1ms, [&] { ++cancelled; });
        noDescriptorLeft = false;
        gone.reset();
        QCOMPARE(calls, 0);
        QTRY_COMPARE(calls, 2);
        QCOMPARE(cancelled, 0);
        QCOMPARE(farCalls, 0);
    }

    void callsEvenWhenTheKernelRefusesToArmTheTimer()
    {
        const auto before = openDescriptors();
        int calls = 0;
        refusesToArm = true;
        const TimerPtr timer = clock_.after(1ms, [&] { ++calls; });
        refusesToArm = false;
        QCOMPARE(openDescriptors(), before);
        QTRY_COMPARE(calls, 1);
    }

    void waitingDoesNotWakeTheProcess()
    {
        QEventLoop loop;
        const TimerPtr end = clock_.after(300ms, [&] { loop.quit(); });
        const TimerPtr far = clock_.after(1h, [] { });
        const TimerPtr farther = clock_.after(2h, [] { });
        const long before = sleeps();
        loop.exec();
        // One sleep until the end, and a margin for paging. A timer that fires at the frame rate would cause eighteen.
        QVERIFY2(sleeps() - before <= 8, qPrintable(QString::number(sleeps() - before)));
    }
};

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::TimerfdClockTest)
#include "tst_timerfdclock.moc"
