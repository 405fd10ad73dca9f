#include "platform/linux/TimerfdClock.h"

#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include <sys/timerfd.h>
#include <unistd.h>

namespace kelvo {

namespace {

using std::chrono::milliseconds;

itimerspec oneShot(milliseconds wait)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(wait);
    itimerspec time{};
    time.it_value.tv_sec = seconds.count();
    time.it_value.tv_nsec = std::chrono::nanoseconds(wait - seconds).count();
    // A value of zero would disarm the timer, so a wait of zero or less becomes one nanosecond.
    if (wait <= milliseconds::zero())
        time.it_value = {.tv_sec = 0, .tv_nsec = 1};
    return time;
}

class TimerfdCall : public ContinuousClock::Timer
{
public:
    TimerfdCall(int descriptor, std::function<void()> callback)
        : descriptor_(descriptor)
        , callback_(std::move(callback))
        , notifier_(descriptor, QSocketNotifier::Read)
    {
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { fire(); });
    }

    ~TimerfdCall() override
    {
        notifier_.setEnabled(false);
        ::close(descriptor_);
    }

private:
    void fire()
    {
        // The kernel reuses descriptor numbers, so this notification can belong to an earlier call.
        std::uint64_t expirations = 0;
        if (::read(descriptor_, &expirations, sizeof expirations) != sizeof expirations)
            return;
        notifier_.setEnabled(false);
        // The callback may destroy this object, so it is moved out of it first.
        const auto call = std::move(callback_);
        call();
    }

    int descriptor_;
    std::function<void()> callback_;
    QSocketNotifier notifier_;
};

class TimerCall : public ContinuousClock::Timer
{
public:
    TimerCall(milliseconds wait, std::function<void()> callback)
        : callback_(std::move(callback))
    {
        constexpr milliseconds longest(std::numeric_limits<int>::max());
        timer_.setSingleShot(true);
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
            const auto call = std::move(callback_);
            call();
        });
        timer_.start(std::clamp(wait, milliseconds::zero(), longest));
    }

private:
    std::function<void()> callback_;
    QTimer timer_;
};

} // namespace

std::unique_ptr<ContinuousClock::Timer> TimerfdClock::after(milliseconds wait, std::function<void()> callback)
{
    const int descriptor = ::timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC | TFD_NONBLOCK);
    const itimerspec time = oneShot(wait);
    if (descriptor >= 0 && ::timerfd_settime(descriptor, 0, &time, nullptr) == 0) {
        return std::make_unique<TimerfdCall>(descriptor, std::move(callback));
    }
    if (descriptor >= 0) {
        ::close(descriptor);
    }
    return std::make_unique<TimerCall>(wait, std::move(callback));
}

} // namespace kelvo
